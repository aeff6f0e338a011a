#pragma once

#include "command.h"

namespace velm {

/// velmora import SOURCE.toml OUT.cnv|OUT.cal
int RunImport(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
