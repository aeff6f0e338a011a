#include "platform/state_folder.h"
#include "platform/xdg_folder_posix.h"

namespace velm {

CVelmString UserStateFolder() {
    return XdgFolder(u"XDG_STATE_HOME", u".local/state");
}

}  // namespace velm
