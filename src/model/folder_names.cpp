#include "model/folder_names.h"

namespace velm {

std::optional<CVelmString> FindInFolder(CVelmFileSystem& files, const CVelmString& folder, const CVelmString& name) {
    if (files.Exists(folder + name)) {
        return name;
    }
    const auto entries = files.List(folder);
    if (!entries) {
        return std::nullopt;
    }
    for (const CVelmFolderEntry& entry : *entries) {
        if (!entry.isFolder && EqualsNoCase(entry.name, name)) {
            return entry.name;
        }
    }
    return std::nullopt;
}

}  // namespace velm
