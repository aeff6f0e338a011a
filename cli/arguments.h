#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "command.h"

namespace velm {

/// One argument of a subcommand and where its value goes. `form` is how the help writes it: "FILE", "[FILE]...",
/// "--to UNIT" or "--raw"; what begins with neither a dash nor a bracket is required. The target says how often it may
/// be given: a text once (an option's last value counts), a list repeatedly. A bool is an option without a value.
struct Argument {
    std::string_view form;
    std::variant<std::string*, std::vector<std::string>*, bool*> target;
    std::string help;
    std::string_view excludes = {};  ///< an option that cannot be used together with this one
};

/// Parses the arguments of the running subcommand. Options may appear anywhere; a word that begins with "-" but is not
/// an option is a value, and so is every word after "--". Exits on invalid usage. False when --help was given; the help
/// is then in the output.
bool ReadArguments(CommandContext& context, const std::vector<std::string>& words, std::vector<Argument> arguments);

/// The examples of a help, an empty line before them; each is given as what follows "velmora ".
std::string ExamplesText(std::span<const char* const> examples);

}  // namespace velm
