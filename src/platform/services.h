#pragma once

#include "platform/clock.h"
#include "platform/file.h"
#include "platform/locale.h"

namespace velm {

/// What the engine asks of the system. The services are not owned and outlive whatever was given them.
struct CVelmServices {
    CVelmFileSystem& files;
    const CVelmClock& clock;
    const CVelmLocale& locale;
};

/// The services of this machine.
CVelmServices SystemServices();

}  // namespace velm
