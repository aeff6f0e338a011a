#include "support/faulty_files.h"

#include <algorithm>
#include <utility>

namespace velm::test {

namespace {

class FaultyFile : public CVelmFile {
public:
    FaultyFile(FaultyFiles& owner, std::unique_ptr<CVelmFile> file) : owner_(owner), file_(std::move(file)) {}
    ~FaultyFile() override { owner_.beforeEachStep(); }

    std::int64_t Read(void* buffer, std::size_t count) override {
        return ++owner_.reads == owner_.failingRead ? -1 : file_->Read(buffer, count);
    }

    std::int64_t Write(const void* buffer, std::size_t count) override {
        if (++owner_.writes == owner_.failingWrite) {
            return -1;
        }
        const auto fitting = static_cast<std::size_t>(std::min<std::uint64_t>(count, owner_.freeBytes));
        owner_.freeBytes -= fitting;
        const std::size_t half = fitting / 2;
        owner_.beforeEachStep();
        const std::int64_t first = file_->Write(buffer, half);
        owner_.beforeEachStep();
        return first + file_->Write(static_cast<const char*>(buffer) + half, fitting - half);
    }

    bool Seek(std::uint64_t position) override { return file_->Seek(position); }
    bool SeekToEnd() override { return file_->SeekToEnd(); }
    std::optional<std::uint64_t> Size() override { return file_->Size(); }
    std::optional<CVelmFileTimes> Times() override { return file_->Times(); }
    bool Flush() override {
        owner_.beforeEachStep();
        return ++owner_.flushes != owner_.failingFlush && file_->Flush();
    }

private:
    FaultyFiles& owner_;
    std::unique_ptr<CVelmFile> file_;
};

}  // namespace

std::unique_ptr<CVelmFile> FaultyFiles::Open(const CVelmString& path, FileMode mode) {
    beforeEachStep();
    auto file = failingOpenForWriting && mode != FileMode::Read ? nullptr : files_.Open(path, mode);
    return file == nullptr ? nullptr : std::make_unique<FaultyFile>(*this, std::move(file));
}

bool FaultyFiles::Replace(const CVelmString& from, const CVelmString& to) {
    beforeEachStep();
    return ++replaces != failingReplace && files_.Replace(from, to);
}

bool FaultyFiles::Remove(const CVelmString& path) {
    beforeEachStep();
    return files_.Remove(path);
}

}  // namespace velm::test
