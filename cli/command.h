#pragma once

#include <array>
#include <string>
#include <vector>

#include "formula/formula_context.h"
#include "output.h"
#include "platform/services.h"

namespace velm {

struct Command;

/// What every subcommand works with.
struct CommandContext {
    const Command& command;  ///< the one that runs
    CVelmServices services;
    FormulaContext& formulas;
    CVelmString dataFolder;  ///< with a separator behind it
    CVelmOutput& out;
};

/// A subcommand: one line of the table in main.cpp. `run` gets the arguments behind its name and returns the exit
/// status; it ends early through CVelmCliError.
struct Command {
    const char* name;
    const char* usage;                    ///< its arguments
    const char* summary;                  ///< one line, for the list of commands and for its own help
    std::array<const char*, 3> examples;  ///< what follows "velmora "
    int (*run)(CommandContext& context, const std::vector<std::string>& arguments);
};

}  // namespace velm
