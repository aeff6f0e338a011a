#pragma once

#include "platform/text.h"

namespace velm {

/// Full path of the running program's file; empty when unknown.
CVelmString ProgramPath();

}  // namespace velm
