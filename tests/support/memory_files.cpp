#include "support/memory_files.h"

#include <algorithm>
#include <utility>

namespace velm::test {

namespace {

class OpenMemoryFile : public CVelmFile {
public:
    OpenMemoryFile(MemoryFiles& owner, std::shared_ptr<MemoryFile> file) : owner_(owner), file_(std::move(file)) {}

    std::int64_t Read(void* buffer, std::size_t count) override {
        if (++owner_.reads == owner_.failingRead) {
            return -1;
        }
        const std::size_t start = std::min(position_, file_->bytes.size());
        const std::size_t moved = std::min(count, file_->bytes.size() - start);
        std::copy_n(file_->bytes.data() + start, moved, static_cast<std::uint8_t*>(buffer));
        position_ += moved;
        return static_cast<std::int64_t>(moved);
    }

    std::int64_t Write(const void* buffer, std::size_t count) override {
        if (++owner_.writes == owner_.failingWrite) {
            return -1;
        }
        const auto fitting = static_cast<std::size_t>(std::min<std::uint64_t>(count, owner_.freeBytes));
        owner_.freeBytes -= fitting;
        file_->bytes.resize(std::max(file_->bytes.size(), position_ + fitting));
        std::copy_n(static_cast<const std::uint8_t*>(buffer), fitting, file_->bytes.data() + position_);
        position_ += fitting;
        return static_cast<std::int64_t>(fitting);
    }

    bool Seek(std::uint64_t position) override {
        position_ = static_cast<std::size_t>(position);
        return true;
    }
    bool SeekToEnd() override { return Seek(file_->bytes.size()); }
    std::optional<std::uint64_t> Size() override { return file_->bytes.size(); }
    std::optional<CVelmFileTimes> Times() override { return file_->times; }
    bool Flush() override { return ++owner_.flushes != owner_.failingFlush; }

private:
    MemoryFiles& owner_;
    std::shared_ptr<MemoryFile> file_;
    std::size_t position_ = 0;
};

}  // namespace

std::unique_ptr<CVelmFile> MemoryFiles::Open(const CVelmString& path, FileMode mode) {
    ++opens;
    const bool wantsExisting = mode == FileMode::Read || mode == FileMode::Append;
    const bool isRefused = mode != FileMode::Read && failingOpenForWriting;
    if (isRefused || (mode != FileMode::Write && wantsExisting != Exists(path))) {
        return nullptr;
    }
    if (!wantsExisting) {
        Add(path, {});
    }
    auto file = std::make_unique<OpenMemoryFile>(*this, files[path]);
    if (mode == FileMode::Append) {
        file->SeekToEnd();
    }
    return file;
}

bool MemoryFiles::Replace(const CVelmString& from, const CVelmString& to) {
    if (++replaces == failingReplace || !Exists(from)) {
        return false;
    }
    files[to] = files.extract(from).mapped();
    return true;
}

std::string MemoryFiles::Names() const {
    std::string names;
    for (const auto& [path, file] : files) {
        names += ToUtf8(path.substr(path.find(FolderSeparator) + 1)) + " ";
    }
    return names;
}

std::optional<std::vector<CVelmFolderEntry>> MemoryFiles::List(const CVelmString& folder) {
    std::vector<CVelmFolderEntry> entries;
    for (const auto& [path, file] : files) {
        const CVelmStringView name = CVelmStringView(path).substr(std::min(folder.size(), path.size()));
        if (path.starts_with(folder) && name.find(FolderSeparator) == CVelmStringView::npos) {
            entries.push_back({CVelmString(name), false});
        }
    }
    return entries;
}

}  // namespace velm::test
