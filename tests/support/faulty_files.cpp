#include "support/faulty_files.h"

#include <algorithm>
#include <utility>

namespace velm::test {

namespace {

class FaultyFile : public CVelmFile {
public:
    FaultyFile(FaultyFiles& owner, std::unique_ptr<CVelmFile> file) : owner_(owner), file_(std::move(file)) {}

    std::int64_t Read(void* buffer, std::size_t count) override {
        return ++owner_.reads == owner_.failingRead ? -1 : file_->Read(buffer, count);
    }

    std::int64_t Write(const void* buffer, std::size_t count) override {
        if (++owner_.writes == owner_.failingWrite) {
            return -1;
        }
        const auto fitting = static_cast<std::size_t>(std::min<std::uint64_t>(count, owner_.freeBytes));
        owner_.freeBytes -= fitting;
        return file_->Write(buffer, fitting);
    }

    bool Seek(std::uint64_t position) override { return file_->Seek(position); }
    bool SeekToEnd() override { return file_->SeekToEnd(); }
    std::optional<std::uint64_t> Size() override { return file_->Size(); }
    std::optional<CVelmFileTimes> Times() override { return file_->Times(); }
    bool Flush() override { return ++owner_.flushes != owner_.failingFlush && file_->Flush(); }

private:
    FaultyFiles& owner_;
    std::unique_ptr<CVelmFile> file_;
};

}  // namespace

std::unique_ptr<CVelmFile> FaultyFiles::Open(const CVelmString& path, FileMode mode) {
    if (failingOpenForWriting && mode != FileMode::Read) {
        return nullptr;
    }
    std::unique_ptr<CVelmFile> file = files_.Open(path, mode);
    return file == nullptr ? nullptr : std::make_unique<FaultyFile>(*this, std::move(file));
}

bool FaultyFiles::Replace(const CVelmString& from, const CVelmString& to) {
    return ++replaces != failingReplace && files_.Replace(from, to);
}

}  // namespace velm::test
