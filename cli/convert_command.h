#pragma once

#include "command.h"

namespace velm {

/// velmora convert FILE UNIT VALUE [--to UNIT]...
int RunConvert(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
