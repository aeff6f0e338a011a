#include "platform/cache_folder.h"
#include "platform/state_folder.h"

namespace velm {

CVelmString UserStateFolder() {
    return UserCacheFolder();
}

}  // namespace velm
