#pragma once

#include "command.h"

namespace velm {

/// velmora export FILE
int RunExport(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
