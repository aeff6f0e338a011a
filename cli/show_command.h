#pragma once

#include "command.h"

namespace velm {

/// velmora show FILE
int RunShow(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
