#include "platform/services.h"

namespace velm {

CVelmServices SystemServices() {
    return {SystemFiles(), SystemClock(), SystemLocale()};
}

}  // namespace velm
