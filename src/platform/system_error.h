#pragma once

#include <cstdint>

#include "platform/text.h"

namespace velm {

/// The system's message for a status, in one line; empty when there is none.
CVelmString SystemErrorText(std::int32_t status);

/// The same for the last failed system call. Looking up or removing a file does not change it.
CVelmString LastErrorText();

}  // namespace velm
