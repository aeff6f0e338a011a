#include "platform/program_folder.h"

#include "platform/file.h"
#include "platform/program_path.h"

namespace velm {

const CVelmString& ProgramFolder() {
    static const CVelmString folder = [] {
        const CVelmString path = ProgramPath();
        const std::size_t separator = path.rfind(FolderSeparator);
        return separator == CVelmString::npos ? CVelmString(1, FolderSeparator) : path.substr(0, separator + 1);
    }();
    return folder;
}

}  // namespace velm
