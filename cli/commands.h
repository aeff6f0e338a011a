#pragma once

#include "command.h"

namespace velm {

/// The subcommands: main.cpp lists their arguments. Each is in the file that is named after it.
int RunAsk(CommandContext& context, const std::vector<std::string>& arguments);
int RunCalc(CommandContext& context, const std::vector<std::string>& arguments);
int RunCheck(CommandContext& context, const std::vector<std::string>& arguments);
int RunConvert(CommandContext& context, const std::vector<std::string>& arguments);
int RunEval(CommandContext& context, const std::vector<std::string>& arguments);
int RunExport(CommandContext& context, const std::vector<std::string>& arguments);
int RunFeed(CommandContext& context, const std::vector<std::string>& arguments);
int RunFiles(CommandContext& context, const std::vector<std::string>& arguments);
int RunImport(CommandContext& context, const std::vector<std::string>& arguments);
int RunOptions(CommandContext& context, const std::vector<std::string>& arguments);
int RunPage(CommandContext& context, const std::vector<std::string>& arguments);
int RunShow(CommandContext& context, const std::vector<std::string>& arguments);
int RunUpdate(CommandContext& context, const std::vector<std::string>& arguments);

}  // namespace velm
