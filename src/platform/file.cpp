#include "platform/file.h"

namespace velm {

CVelmString WithSeparator(CVelmString folder) {
    if (folder.empty() || folder.back() != FolderSeparator) {
        folder += FolderSeparator;
    }
    return folder;
}

}  // namespace velm
