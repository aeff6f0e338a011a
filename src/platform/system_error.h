#pragma once

#include <cstdint>

#include "platform/text.h"

namespace velm {

/// What the system says of one of its statuses, in one line; empty when it says nothing.
CVelmString SystemErrorText(std::int32_t status);

/// The same of the call of the system that failed last. Asking for a file and removing one leave that as it is.
CVelmString LastErrorText();

}  // namespace velm
