#include "model/file_stream.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace velm {

static_assert(std::endian::native == std::endian::little, "integers and doubles go into files as held in memory");

namespace {

/// Enough for a whole header and most whole files.
constexpr std::size_t BUFFER_SIZE = 8192;

}  // namespace

bool CVelmFileStream::Open(const CVelmString& path, FileMode mode) {
    Close();
    writeFailed_ = false;
    openFailed_ = true;
    if (path.empty() || IsInMemory()) {
        return false;
    }
    file_ = files_->Open(path, mode);
    if (file_ == nullptr) {
        return false;
    }
    path_ = path;
    mode_ = mode;
    size_ = mode == FileMode::Read ? file_->Size().value_or(0) : 0;
    openFailed_ = false;
    return true;
}

bool CVelmFileStream::Reopen() {
    file_ = files_->Open(path_, mode_);
    ForgetBuffer(0);
    openFailed_ = openFailed_ || file_ == nullptr;
    return file_ != nullptr;
}

std::int64_t CVelmFileStream::FillBuffer() {
    // At most the rest of the file: asking for more costs an extra call that finds the end.
    const std::uint64_t left = size_ > filePosition_ ? size_ - filePosition_ : BUFFER_SIZE;
    buffer_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(left, BUFFER_SIZE)));
    bufferPosition_ = 0;
    const std::int64_t moved = file_->Read(buffer_.data(), buffer_.size());
    buffer_.resize(static_cast<std::size_t>(std::max<std::int64_t>(moved, 0)));
    filePosition_ += buffer_.size();
    return moved;
}

std::int32_t CVelmFileStream::Read(std::size_t count, void* buffer) {
    if (!IsReading()) {
        return -1;
    }
    count = std::min<std::size_t>(count, std::numeric_limits<std::int32_t>::max());
    std::size_t done = 0;
    while (done < count) {
        if (bufferPosition_ == buffer_.size()) {
            const std::int64_t filled = FillBuffer();
            if (filled < 0 && done == 0) {
                return -1;
            }
            if (filled <= 0) {
                break;
            }
        }
        const std::size_t step = std::min(count - done, buffer_.size() - bufferPosition_);
        buffer_.copy(static_cast<char*>(buffer) + done, step, bufferPosition_);
        bufferPosition_ += step;
        done += step;
    }
    return static_cast<std::int32_t>(done);
}

bool CVelmFileStream::ReadWhole(void* buffer, std::size_t count) {
    return Read(count, buffer) == static_cast<std::int32_t>(count);
}

bool CVelmFileStream::WriteBuffer() {
    if (buffer_.empty()) {
        return true;
    }
    const bool whole = file_->Write(buffer_.data(), buffer_.size()) == static_cast<std::int64_t>(buffer_.size());
    writeFailed_ = writeFailed_ || !whole;
    ForgetBuffer(filePosition_ + buffer_.size());
    return whole;
}

std::int32_t CVelmFileStream::Write(const void* buffer, std::size_t count) {
    if (!IsWriting() || count > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        return -1;
    }
    buffer_.append(static_cast<const char*>(buffer), count);
    if (!IsInMemory() && buffer_.size() >= BUFFER_SIZE && !WriteBuffer()) {
        return -1;
    }
    return static_cast<std::int32_t>(count);
}

bool CVelmFileStream::MoveTo(std::uint64_t position) {
    if (file_ == nullptr || (IsWriting() && !WriteBuffer()) || !file_->Seek(position)) {
        return false;
    }
    ForgetBuffer(position);
    return true;
}

std::int32_t CVelmFileStream::ReadAt(std::uint32_t position, std::size_t count, void* buffer) {
    if (!IsReading() || (!MoveTo(position) && !(Reopen() && MoveTo(position)))) {
        return -1;
    }
    const std::int32_t moved = Read(count, buffer);
    if (moved < 0) {
        Reopen();
    }
    return moved;
}

std::int32_t CVelmFileStream::WriteAt(std::uint32_t position, const void* buffer, std::size_t count) {
    if (!IsWriting() || !MoveTo(position)) {
        writeFailed_ = true;
        return -1;
    }
    return Write(buffer, count);
}

std::int32_t CVelmFileStream::ReadLine(CVelmString& text) {
    text.clear();
    if (!IsReading()) {
        return -1;
    }
    std::int32_t done = 0;
    while (done < std::numeric_limits<std::int32_t>::max()) {
        if (bufferPosition_ == buffer_.size()) {
            const std::int64_t filled = FillBuffer();
            if (filled <= 0) {
                return filled < 0 && done == 0 ? -1 : done;
            }
        }
        const char byte = buffer_[bufferPosition_++];
        ++done;
        if (byte == '\n' || byte == '\r') {
            break;
        }
        text += static_cast<char16_t>(static_cast<unsigned char>(byte));
    }
    return done;
}

std::int32_t CVelmFileStream::ReadString(CVelmString& text) {
    std::int32_t length = 0;
    if (!ReadInt(length) || length < 0 || length > MAX_STRING) {
        return 0;
    }
    const std::size_t bytes = static_cast<std::size_t>(length) * sizeof(char16_t);
    if (Remaining() < bytes) {
        MoveTo(size_);  // as a short read would
        return 0;
    }
    CVelmString read(static_cast<std::size_t>(length), u'\0');
    if (!ReadWhole(read.data(), bytes)) {
        return 0;
    }
    text = std::move(read);
    return static_cast<std::int32_t>(bytes + sizeof length);
}

std::int32_t CVelmFileStream::WriteString(CVelmStringView text) {
    if (text.size() > static_cast<std::size_t>(MAX_STRING)) {
        writeFailed_ = true;
        return 0;
    }
    const std::size_t bytes = text.size() * sizeof(char16_t);
    const auto counted = static_cast<std::int32_t>(bytes + sizeof(std::int32_t));
    if (file_ == nullptr && !IsInMemory()) {
        return counted;
    }
    const bool written = WriteInt(static_cast<std::int32_t>(text.size())) > 0 && Write(text.data(), bytes) >= 0;
    return written ? counted : 0;
}

std::uint32_t CVelmFileStream::GetSize() {
    if (file_ == nullptr || (IsWriting() && !WriteBuffer())) {
        return 0;
    }
    constexpr std::uint64_t MAX_SIZE = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::min(IsWriting() ? file_->Size().value_or(0) : size_, MAX_SIZE));
}

std::uint64_t CVelmFileStream::Remaining() {
    const std::uint64_t ahead = buffer_.size() - bufferPosition_;
    return ahead + (size_ > filePosition_ ? size_ - filePosition_ : 0);
}

std::uint64_t CVelmFileStream::Position() const {
    return IsWriting() ? filePosition_ + buffer_.size() : filePosition_ - (buffer_.size() - bufferPosition_);
}

void CVelmFileStream::ForgetBuffer(std::uint64_t position) {
    buffer_.clear();
    bufferPosition_ = 0;
    filePosition_ = position;
}

bool CVelmFileStream::GetTime(CVelmCalendarTime& time) {
    const auto times = file_ == nullptr ? std::nullopt : file_->Times();
    if (!times) {
        return false;
    }
    const bool writeIsLater =
        static_cast<std::uint32_t>(times->lastWrite) > static_cast<std::uint32_t>(times->lastAccess);
    time = clock_->ToLocalCalendar(writeIsLater ? times->lastWrite : times->lastAccess);
    return true;
}

bool CVelmFileStream::Close() {
    if (file_ != nullptr && IsWriting()) {
        WriteBuffer();
    }
    file_.reset();
    path_.clear();
    ForgetBuffer(0);
    size_ = 0;
    return !writeFailed_;
}

std::optional<std::string> CVelmFileStream::TakeBytes() {
    return writeFailed_ ? std::nullopt : std::optional(std::move(buffer_));
}

}  // namespace velm
