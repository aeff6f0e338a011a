#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/file.h"
#include "platform/text.h"

namespace velm {

/// The one reader and writer of data files, update lists and update files. Integers are 32-bit little-endian,
/// doubles IEEE 754 64-bit little-endian.
class CVelmFileStream {
public:
    /// Longest counted string, in UTF-16 units.
    static constexpr std::int32_t MAX_STRING = 65535;

    /// The services are not owned and outlive the stream.
    CVelmFileStream(CVelmFileSystem& files, const CVelmClock& clock) : files_(&files), clock_(&clock) {}

    /// A stream for writing into memory.
    CVelmFileStream() : mode_(FileMode::Write) {}
    ~CVelmFileStream() { Close(); }
    CVelmFileStream(const CVelmFileStream&) = delete;
    CVelmFileStream& operator=(const CVelmFileStream&) = delete;

    /// Failure to open sets the error flag. An empty path fails without touching the file system.
    bool OpenRead(const CVelmString& path) { return Open(path, FileMode::Read); }
    bool OpenWrite(const CVelmString& path) { return Open(path, FileMode::Write); }
    bool OpenAppend(const CVelmString& path) { return Open(path, FileMode::Append); }
    bool HasError() const { return openFailed_; }

    /// Bytes moved, or -1 when the system refuses. Calls may be buffered: Close reports what was held back.
    std::int32_t Read(std::size_t count, void* buffer);
    std::int32_t Write(const void* buffer, std::size_t count);
    std::int32_t ReadAt(std::uint32_t position, std::size_t count, void* buffer);
    std::int32_t WriteAt(std::uint32_t position, const void* buffer, std::size_t count);

    /// Reads single bytes up to, not including, a byte 10 or 13, widening each to a character. Returns the bytes
    /// read, the line end included: 0 at the end of the file, -1 when the system refuses.
    std::int32_t ReadLine(CVelmString& text);

    /// Reads a whole value; false when it is short.
    bool ReadInt(std::int32_t& value) { return ReadWhole(&value, sizeof value); }
    bool ReadDouble(double& value) { return ReadWhole(&value, sizeof value); }
    std::int32_t WriteInt(std::int32_t value) { return Write(&value, sizeof value); }
    std::int32_t WriteDouble(double value) { return Write(&value, sizeof value); }

    /// A counted string: signed length, then that many UTF-16LE units. Returns its bytes, 0 on failure. A text too
    /// long to be read again counts as a failed write. Without an open file, WriteString only returns the bytes.
    std::int32_t ReadString(CVelmString& text);
    std::int32_t WriteString(CVelmStringView text);

    /// Length of the file in bytes, saturated to 32 bits; 0 when unknown.
    std::uint32_t GetSize();

    /// Bytes between the current position and the end of a file open for reading.
    std::uint64_t Remaining();

    /// The current position, and the bytes read or written since position `start`.
    std::uint64_t Position() const;
    std::int32_t BytesSince(std::uint64_t start) const { return static_cast<std::int32_t>(Position() - start); }

    /// The later of last write and last access, comparing only the low halves of the two file times, unsigned;
    /// the last access wins a tie. Deliberate: files are stamped this way.
    bool GetTime(CVelmCalendarTime& time);

    /// Closes and forgets the path. False when any write since opening failed.
    bool Close();

    /// What was written into memory; nothing when a write failed.
    std::optional<std::string> TakeBytes();

private:
    bool Open(const CVelmString& path, FileMode mode);
    bool Reopen();
    bool IsInMemory() const { return files_ == nullptr; }
    bool IsReading() const { return file_ != nullptr && mode_ == FileMode::Read; }
    bool IsWriting() const { return IsInMemory() || (file_ != nullptr && mode_ != FileMode::Read); }
    bool ReadWhole(void* buffer, std::size_t count);

    /// Fills the empty buffer from the file. Bytes read, or -1.
    std::int64_t FillBuffer();
    bool WriteBuffer();
    bool MoveTo(std::uint64_t position);

    /// The system is at the position now.
    void ForgetBuffer(std::uint64_t position);

    CVelmFileSystem* files_ = nullptr;   ///< null for a stream into memory
    const CVelmClock* clock_ = nullptr;  ///< the same
    std::unique_ptr<CVelmFile> file_;
    CVelmString path_;
    FileMode mode_ = FileMode::Read;
    std::string buffer_;              ///< bytes read ahead, or not yet written
    std::size_t bufferPosition_ = 0;  ///< first byte of the buffer that is not yet read
    std::uint64_t filePosition_ = 0;  ///< where the system reads or writes next; from 0 when appending
    std::uint64_t size_ = 0;          ///< length when opened for reading
    bool openFailed_ = false;
    bool writeFailed_ = false;
};

}  // namespace velm
