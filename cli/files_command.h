#pragma once

#include "command.h"

namespace velm {

/// velmora files [--json]
int RunFiles(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
