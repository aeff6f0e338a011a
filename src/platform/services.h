#pragma once

#include "platform/clock.h"
#include "platform/file.h"
#include "platform/locale.h"

namespace velm {

/// The system services that the engine uses. Not owned; they outlive their users.
struct CVelmServices {
    CVelmFileSystem& files;
    const CVelmClock& clock;
    const CVelmLocale& locale;
};

/// The services of this machine.
CVelmServices SystemServices();

}  // namespace velm
