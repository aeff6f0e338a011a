#pragma once

#include "platform/text.h"

namespace velm {

/// Where the program keeps what it remembers of the user's sessions, with a separator at the end; it need not exist.
/// Empty when the system has no such place.
CVelmString UserStateFolder();

}  // namespace velm
