#pragma once

#include <map>
#include <memory>

#include "platform/file.h"
#include "support/temporary_folder.h"

namespace velm::test {

/// One file of a MemoryFiles.
struct MemoryFile {
    Bytes bytes;
    CVelmFileTimes times;
};

/// A file system that keeps its files in memory. Names are exact, letter case included.
class MemoryFiles : public CVelmFileSystem {
public:
    std::unique_ptr<CVelmFile> Open(const CVelmString& path, FileMode mode) override;
    bool Replace(const CVelmString& from, const CVelmString& to) override;
    bool Remove(const CVelmString& path) override { return files.erase(path) > 0; }
    bool Exists(const CVelmString& path) override { return files.count(path) > 0; }
    std::optional<std::vector<CVelmFolderEntry>> List(const CVelmString& folder) override;

    void Add(const CVelmString& path, Bytes bytes, CVelmFileTimes times = {}) {
        files[path] = std::make_shared<MemoryFile>(MemoryFile{std::move(bytes), times});
    }

    /// Empty for a missing file.
    Bytes Content(const CVelmString& path) const { return files.count(path) > 0 ? files.at(path)->bytes : Bytes(); }

    std::map<CVelmString, std::shared_ptr<MemoryFile>> files;
    int opens = 0;  ///< calls of Open
    int reads = 0;  ///< calls of Read on any file
    int writes = 0;
};

}  // namespace velm::test
