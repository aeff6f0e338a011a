#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/text.h"

namespace velm {

/// The two times of a file that its system keeps, as ticks of 100 ns since 1601-01-01 00:00 UTC.
struct CVelmFileTimes {
    std::uint64_t lastWrite = 0;
    std::uint64_t lastAccess = 0;
};

/// An open file. Destroying it closes it.
class CVelmFile {
public:
    virtual ~CVelmFile() = default;

    /// Bytes moved, fewer than `count` at the end of the file (read) or on a full disk (write); -1 on failure.
    virtual std::int64_t Read(void* buffer, std::size_t count) = 0;
    virtual std::int64_t Write(const void* buffer, std::size_t count) = 0;

    /// Seeks to a position from the start of the file.
    virtual bool Seek(std::uint64_t position) = 0;
    virtual bool SeekToEnd() = 0;
    virtual std::optional<std::uint64_t> Size() = 0;
    virtual std::optional<CVelmFileTimes> Times() = 0;

    /// Flushes everything written to the disk, so that it survives a power failure.
    virtual bool Flush() = 0;
};

enum class FileMode {
    Read,       ///< an existing file, shared for reading
    Write,      ///< created, or emptied when it exists; not shared
    Append,     ///< an existing file for writing, positioned at its end; not shared
    CreateNew,  ///< created; fails when a file of that name exists; not shared
};

/// What tells whether a file or a folder has changed.
struct CVelmFileStamp {
    std::uint64_t size = 0;
    std::uint64_t lastWrite = 0;  ///< ticks of 100 ns since 1601-01-01 00:00 UTC
};

struct CVelmFolderEntry {
    CVelmString name;  ///< without folder, with extension
    bool isFolder = false;
};

/// The file system. Paths use FolderSeparator. Tests substitute one that fails at a chosen call.
class CVelmFileSystem {
public:
    virtual ~CVelmFileSystem() = default;

    /// Null when the file cannot be opened in this mode.
    virtual std::unique_ptr<CVelmFile> Open(const CVelmString& path, FileMode mode) = 0;

    /// Atomically replaces `to` by `from`: opening `to` yields either the whole old file or the whole new one.
    virtual bool Replace(const CVelmString& from, const CVelmString& to) = 0;
    virtual bool Remove(const CVelmString& path) = 0;

    /// Resolves symbolic links; the path itself when it is no link or a dangling one.
    virtual CVelmString ResolveLinks(const CVelmString& path) { return path; }
    virtual bool Exists(const CVelmString& path) = 0;

    /// The stamp of a file; of a folder, which changes when a file comes, goes or is replaced, only where the system
    /// keeps one. Nothing when there is none.
    virtual std::optional<CVelmFileStamp> Stamp(const CVelmString& path);

    /// Creates a folder and those above it. True also when it exists.
    virtual bool CreateFolder(const CVelmString& path);

    /// The entries of a folder sorted by name regardless of letter case, without "." and ".."; nothing when it cannot
    /// be read.
    virtual std::optional<std::vector<CVelmFolderEntry>> List(const CVelmString& folder) = 0;
};

/// Reads to the end of the file, at most `limit` bytes. False when a read failed; `bytes` then holds what was read
/// before.
bool ReadToEnd(CVelmFile& file, std::size_t limit, std::string& bytes);

/// The file of a folder with that name in any letter case, as the folder spells it; the exact spelling is preferred.
/// Nothing when there is none. The folder ends with a separator or is empty.
std::optional<CVelmString> FindInFolder(CVelmFileSystem& files, const CVelmString& folder, const CVelmString& name);

/// "\" on Windows, "/" elsewhere.
extern const char16_t FolderSeparator;

/// Appends FolderSeparator unless the folder ends with one. An empty folder becomes the separator alone.
CVelmString WithSeparator(CVelmString folder);

/// The path of a name in a folder, or in the current one for an empty folder.
CVelmString InFolder(const CVelmString& folder, const CVelmString& name);

/// The file system of this machine; lives as long as the process.
CVelmFileSystem& SystemFiles();

}  // namespace velm
