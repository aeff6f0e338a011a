#include <cerrno>
#include <system_error>

#include "platform/system_error.h"

namespace velm {

CVelmString SystemErrorText(std::int32_t status) {
    return FromUtf8(std::system_category().message(status));
}

CVelmString LastErrorText() {
    return SystemErrorText(errno);
}

}  // namespace velm
