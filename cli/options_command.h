#pragma once

#include "command.h"

namespace velm {

/// velmora options [NAME [VALUE]]
int RunOptions(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
