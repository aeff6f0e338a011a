#pragma once

#include "command.h"

namespace velm {

/// velmora update [--url URL] [FILE]...
int RunUpdate(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
