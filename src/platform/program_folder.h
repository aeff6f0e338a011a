#pragma once

#include "platform/text.h"

namespace velm {

/// The folder of the running program, with a separator at the end; cached. The separator alone when unknown.
const CVelmString& ProgramFolder();

}  // namespace velm
