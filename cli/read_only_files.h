#pragma once

#include "platform/file.h"

namespace velm {

/// A read-only view of another file system.
class CVelmReadOnlyFiles : public CVelmFileSystem {
public:
    /// `files` is not owned.
    explicit CVelmReadOnlyFiles(CVelmFileSystem& files) : files_(files) {}

    std::unique_ptr<CVelmFile> Open(const CVelmString& path, FileMode mode) override {
        return mode == FileMode::Read ? files_.Open(path, mode) : nullptr;
    }
    bool Replace(const CVelmString&, const CVelmString&) override { return false; }
    bool Remove(const CVelmString&) override { return false; }
    bool Exists(const CVelmString& path) override { return files_.Exists(path); }
    std::optional<CVelmFileStamp> Stamp(const CVelmString& path) override { return files_.Stamp(path); }
    std::optional<std::vector<CVelmFolderEntry>> List(const CVelmString& folder) override {
        return files_.List(folder);
    }

private:
    CVelmFileSystem& files_;
};

}  // namespace velm
