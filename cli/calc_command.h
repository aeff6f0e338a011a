#pragma once

#include "command.h"

namespace velm {

/// velmora calc FILE [ID=VALUE]...
int RunCalc(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
