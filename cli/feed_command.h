#pragma once

#include "command.h"

namespace velm {

/// velmora feed --rates RATES --base-url URL --out DIR [--file NAME]
int RunFeed(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
