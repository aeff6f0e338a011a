#pragma once

#include <cstdint>
#include <limits>
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

/// An in-memory file system that can fail at chosen calls. Names are case-sensitive. Calls are counted from 1 over all
/// files; 0 means that no call fails.
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
    void AddText(const CVelmString& path, std::string_view text) { Add(path, Bytes(text.begin(), text.end())); }

    /// Empty for a missing file.
    Bytes Content(const CVelmString& path) const { return files.count(path) > 0 ? files.at(path)->bytes : Bytes(); }

    /// The names of all files without their folders, each followed by a space.
    std::string Names() const;

    std::map<CVelmString, std::shared_ptr<MemoryFile>> files;
    int opens = 0;
    int reads = 0;
    int writes = 0;
    int flushes = 0;
    int replaces = 0;

    int failingRead = 0;
    int failingWrite = 0;
    int failingFlush = 0;
    int failingReplace = 0;
    bool failingOpenForWriting = false;                                   ///< as on a read-only folder
    std::uint64_t freeBytes = std::numeric_limits<std::uint64_t>::max();  ///< a disk that is full after so many
};

}  // namespace velm::test
