#pragma once

#include <cstdint>
#include <functional>
#include <limits>

#include "platform/file.h"

namespace velm::test {

/// Hands every call on to another file system, and fails where a test asks for it. Calls are counted from 1 over all
/// files; 0 means that no call fails.
class FaultyFiles : public CVelmFileSystem {
public:
    explicit FaultyFiles(CVelmFileSystem& files) : files_(files) {}

    std::unique_ptr<CVelmFile> Open(const CVelmString& path, FileMode mode) override;
    bool Replace(const CVelmString& from, const CVelmString& to) override;
    bool Remove(const CVelmString& path) override;
    CVelmString ResolveLinks(const CVelmString& path) override { return files_.ResolveLinks(path); }
    bool Exists(const CVelmString& path) override { return files_.Exists(path); }
    std::optional<std::vector<CVelmFolderEntry>> List(const CVelmString& folder) override {
        return files_.List(folder);
    }

    int failingWrite = 0;
    int failingFlush = 0;
    int failingReplace = 0;
    int failingRead = 0;
    bool failingOpenForWriting = false;                                   ///< as on a read-only folder
    std::uint64_t freeBytes = std::numeric_limits<std::uint64_t>::max();  ///< a disk that is full after so many
    std::function<void()> beforeEachStep = [] {};  ///< a step is a call that may change the disk, or half a write

    int writes = 0;
    int flushes = 0;
    int replaces = 0;
    int reads = 0;

private:
    CVelmFileSystem& files_;
};

}  // namespace velm::test
