#include "support/memory_files.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace velm::test {

namespace {

class OpenMemoryFile : public CVelmFile {
public:
    OpenMemoryFile(MemoryFiles& owner, std::shared_ptr<MemoryFile> file) : owner_(owner), file_(std::move(file)) {}

    std::int64_t Read(void* buffer, std::size_t count) override {
        ++owner_.reads;
        const std::size_t size = file_->bytes.size();
        const std::size_t moved = position_ < size ? std::min(count, size - position_) : 0;
        if (moved > 0) {
            std::memcpy(buffer, file_->bytes.data() + position_, moved);
            position_ += moved;
        }
        return static_cast<std::int64_t>(moved);
    }

    std::int64_t Write(const void* buffer, std::size_t count) override {
        ++owner_.writes;
        if (count > 0) {
            file_->bytes.resize(std::max(file_->bytes.size(), position_ + count));
            std::memcpy(file_->bytes.data() + position_, buffer, count);
            position_ += count;
        }
        return static_cast<std::int64_t>(count);
    }

    bool Seek(std::uint64_t position) override {
        position_ = static_cast<std::size_t>(position);
        return true;
    }
    bool SeekToEnd() override { return Seek(file_->bytes.size()); }
    std::optional<std::uint64_t> Size() override { return file_->bytes.size(); }
    std::optional<CVelmFileTimes> Times() override { return file_->times; }
    bool Flush() override { return true; }

private:
    MemoryFiles& owner_;
    std::shared_ptr<MemoryFile> file_;
    std::size_t position_ = 0;
};

}  // namespace

std::unique_ptr<CVelmFile> MemoryFiles::Open(const CVelmString& path, FileMode mode) {
    ++opens;
    const auto found = files.find(path);
    const bool exists = found != files.end();
    const bool wantsExisting = mode == FileMode::Read || mode == FileMode::Append;
    if (wantsExisting != exists && mode != FileMode::Write) {
        return nullptr;
    }
    if (mode == FileMode::Write || mode == FileMode::CreateNew) {
        files[path] = std::make_shared<MemoryFile>();
    }
    auto file = std::make_unique<OpenMemoryFile>(*this, files[path]);
    if (mode == FileMode::Append) {
        file->SeekToEnd();
    }
    return file;
}

bool MemoryFiles::Replace(const CVelmString& from, const CVelmString& to) {
    const auto found = files.find(from);
    if (found == files.end()) {
        return false;
    }
    std::shared_ptr<MemoryFile> file = found->second;
    files.erase(found);
    files[to] = std::move(file);
    return true;
}

bool MemoryFiles::Remove(const CVelmString& path) {
    return files.erase(path) > 0;
}

bool MemoryFiles::Exists(const CVelmString& path) {
    return files.count(path) > 0;
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

void MemoryFiles::Add(const CVelmString& path, Bytes bytes, CVelmFileTimes times) {
    files[path] = std::make_shared<MemoryFile>(MemoryFile{std::move(bytes), times});
}

Bytes MemoryFiles::Content(const CVelmString& path) const {
    const auto found = files.find(path);
    return found == files.end() ? Bytes() : found->second->bytes;
}

}  // namespace velm::test
