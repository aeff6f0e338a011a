#pragma once

#include "platform/text.h"

namespace velm {

/// Where the program may keep what it can make again, with a separator at the end; it need not exist. Empty when the
/// system has no such place.
CVelmString UserCacheFolder();

}  // namespace velm
