#include "platform/cache_folder.h"
#include "platform/xdg_folder_posix.h"

namespace velm {

CVelmString UserCacheFolder() {
    return XdgFolder(u"XDG_CACHE_HOME", u".cache");
}

}  // namespace velm
