#include <unistd.h>

#include <string>

#include "platform/program_path.h"

namespace velm {

CVelmString ProgramPath() {
    for (std::size_t size = 512; size <= 65536; size *= 2) {
        std::string path(size, '\0');
        const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) {
            return {};
        }
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(static_cast<std::size_t>(length));
            return FromUtf8(path);
        }
    }
    return {};
}

}  // namespace velm
