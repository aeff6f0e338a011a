#pragma once

#include "platform/text.h"

namespace velm {

/// Full path of the running program cut after its last folder separator, the separator kept. Asked for once.
/// The separator alone when the system does not tell.
const CVelmString& ProgramFolder();

}  // namespace velm
