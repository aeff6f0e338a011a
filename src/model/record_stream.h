#pragma once

#include <algorithm>
#include <cstdint>

#include "model/file_stream.h"
#include "platform/text.h"

namespace velm {

/// Reads the pieces of a record one after the other and counts their bytes. Each is false when its piece is short.
class CVelmRecordReader {
public:
    /// The stream is not owned.
    explicit CVelmRecordReader(CVelmFileStream& stream) : stream_(stream) {}

    bool Int(std::int32_t& value) { return Part(stream_.ReadInt(value) ? sizeof value : 0); }
    bool Double(double& value) { return Part(stream_.ReadDouble(value) ? sizeof value : 0); }
    bool String(CVelmString& text) { return Part(stream_.ReadString(text)); }

    /// Counts a part that was read on its own; 0 bytes are a short one.
    bool Part(std::int64_t bytes) {
        bytes_ += static_cast<std::int32_t>(bytes);
        return bytes > 0;
    }

    std::int32_t Bytes() const { return bytes_; }

private:
    CVelmFileStream& stream_;
    std::int32_t bytes_ = 0;
};

/// Writes them and counts their bytes. A write that fails counts none; the stream remembers it.
class CVelmRecordWriter {
public:
    /// The stream is not owned.
    explicit CVelmRecordWriter(CVelmFileStream& stream) : stream_(stream) {}

    void Int(std::int32_t value) { Part(stream_.WriteInt(value)); }
    void Double(double value) { Part(stream_.WriteDouble(value)); }
    void String(CVelmStringView text) { Part(stream_.WriteString(text)); }
    void Part(std::int32_t bytes) { bytes_ += std::max(bytes, 0); }

    std::int32_t Bytes() const { return bytes_; }

private:
    CVelmFileStream& stream_;
    std::int32_t bytes_ = 0;
};

}  // namespace velm
