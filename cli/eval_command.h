#pragma once

#include "command.h"

namespace velm {

/// velmora eval FORMULA [NAME=VALUE]...
int RunEval(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
