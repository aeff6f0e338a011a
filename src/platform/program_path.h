#pragma once

#include "platform/text.h"

namespace velm {

/// Full path of the running program's file; empty when the system does not tell.
CVelmString ProgramPath();

}  // namespace velm
