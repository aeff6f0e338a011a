#pragma once

#include "command.h"

namespace velm {

/// velmora check PATH...
int RunCheck(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
