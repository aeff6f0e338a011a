#include "platform/file.h"

#include <algorithm>

namespace velm {

std::optional<CVelmFileStamp> CVelmFileSystem::Stamp(const CVelmString& path) {
    const auto file = Open(path, FileMode::Read);
    const auto size = file ? file->Size() : std::nullopt;
    const auto times = file ? file->Times() : std::nullopt;
    return size && times ? std::optional(CVelmFileStamp{*size, times->lastWrite}) : std::nullopt;
}

bool CVelmFileSystem::CreateFolder(const CVelmString&) {
    return false;
}

bool ReadToEnd(CVelmFile& file, std::size_t limit, std::string& bytes) {
    constexpr std::size_t STEP = 1 << 16;
    bytes.clear();
    while (bytes.size() < limit) {
        const std::size_t have = bytes.size();
        bytes.resize(have + std::min(STEP, limit - have));
        const std::int64_t count = file.Read(bytes.data() + have, bytes.size() - have);
        bytes.resize(have + static_cast<std::size_t>(std::max<std::int64_t>(count, 0)));
        if (count <= 0) {
            return count == 0;
        }
    }
    return true;
}

std::optional<CVelmString> FindInFolder(CVelmFileSystem& files, const CVelmString& folder, const CVelmString& name) {
    if (files.Exists(folder + name)) {
        return name;
    }
    for (const CVelmFolderEntry& entry : files.List(folder).value_or(std::vector<CVelmFolderEntry>())) {
        if (!entry.isFolder && EqualsNoCase(entry.name, name)) {
            return entry.name;
        }
    }
    return std::nullopt;
}

CVelmString WithSeparator(CVelmString folder) {
    if (folder.empty() || folder.back() != FolderSeparator) {
        folder += FolderSeparator;
    }
    return folder;
}

CVelmString InFolder(const CVelmString& folder, const CVelmString& name) {
    return folder.empty() ? name : WithSeparator(folder) + name;
}

}  // namespace velm
