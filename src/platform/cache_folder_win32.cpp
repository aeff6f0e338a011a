#include "platform/cache_folder.h"
#include "platform/file.h"
#include "platform/terminal.h"

namespace velm {

CVelmString UserCacheFolder() {
    const auto folder = EnvironmentVariable(u"LOCALAPPDATA");
    return folder ? WithSeparator(*folder) + u"Velmora\\" : CVelmString();
}

}  // namespace velm
