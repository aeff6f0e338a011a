#include "platform/cache_folder.h"
#include "platform/file.h"
#include "platform/terminal.h"

namespace velm {

CVelmString UserCacheFolder() {
    if (const auto folder = EnvironmentVariable(u"XDG_CACHE_HOME"); folder && folder->front() == u'/') {
        return WithSeparator(*folder) + u"velmora/";
    }
    const auto home = EnvironmentVariable(u"HOME");
    return home ? WithSeparator(*home) + u".cache/velmora/" : CVelmString();
}

}  // namespace velm
