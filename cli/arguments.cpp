#include "arguments.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli_error.h"
#include "suggest.h"
#include "table.h"

namespace velm {

namespace {

using Words = std::vector<std::string>;

/// "--to" of "--to UNIT", "PATH" of "PATH...".
std::string NameOf(const Argument& argument) {
    return std::string(argument.form.substr(0, argument.form.find_first_of(" .")));
}

/// Two dashes and a word of at least two letters. Anything else with a dash before it is a negative value.
bool LooksLikeOption(const std::string& name) {
    return name.size() >= 4 && name.starts_with("--") && name[2] != '-' &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-") == std::string::npos;
}

void Store(const Argument& argument, const std::string& value) {
    if (auto* const* const text = std::get_if<std::string*>(&argument.target)) {
        **text = value;
    } else if (auto* const* const list = std::get_if<Words*>(&argument.target)) {
        (*list)->push_back(value);
    } else {
        *std::get<bool*>(argument.target) = true;
    }
}

class ArgumentReader {
public:
    ArgumentReader(std::string_view command, const std::vector<Argument>& arguments) : command_(command) {
        for (const Argument& argument : arguments) {
            (argument.form.starts_with('-') ? options_ : positionals_).push_back(&argument);
        }
    }

    /// Stores what the options say. Returns the words that belong to none.
    Words ReadOptions(const Words& words) const {
        Words values;
        Words given;
        for (auto word = words.begin(); word != words.end(); ++word) {
            if (*word == "--") {
                values.insert(values.end(), word + 1, words.end());
                break;
            }
            const std::size_t equals = word->find('=');
            const bool joined = equals != std::string::npos;
            const std::string name = word->substr(0, equals);
            const Argument* const option = FindOption(name);
            if (option == nullptr) {
                values.push_back(*word);
                continue;
            }
            const bool isFlag = std::holds_alternative<bool*>(option->target);
            const bool valueFollows = !isFlag && !joined && word + 1 != words.end();
            const std::string value = joined ? word->substr(equals + 1) : valueFollows ? *++word : "";
            Require(value.empty() == isFlag, name + (isFlag ? " takes no value" : " needs a value"));
            Store(*option, value);
            given.push_back(name);
        }
        CheckExclusions(given);
        return values;
    }

    void ReadPositionals(const Words& values) const {
        auto value = values.begin();
        for (const Argument* argument : positionals_) {
            Require(value != values.end() || argument->form.starts_with('['), NameOf(*argument) + " is required");
            const bool takesAll = std::holds_alternative<Words*>(argument->target);
            for (const auto end = takesAll ? values.end() : value + 1; value != end; ++value) {
                Store(*argument, *value);
            }
        }
        if (value != values.end()) {
            Require(false, "unexpected argument " + Quoted(*value));
        }
    }

private:
    /// Null for a value. A misspelled option ends the command.
    const Argument* FindOption(const std::string& name) const {
        Words known;
        for (const Argument* option : options_) {
            known.push_back(NameOf(*option));
            if (known.back() == name) {
                return option;
            }
        }
        if (LooksLikeOption(name)) {
            FailUsage(name == "--data"
                          ? fmt::format("{}: --data goes before the command", command_)
                          : fmt::format("{}: unknown option {}; {}", command_, name, DidYouMean(name, known)));
        }
        return nullptr;
    }

    void CheckExclusions(const Words& given) const {
        const auto isGiven = [&](std::string_view name) {
            return std::find(given.begin(), given.end(), name) != given.end();
        };
        for (const Argument* option : options_) {
            Require(!isGiven(NameOf(*option)) || !isGiven(option->excludes),
                    fmt::format("{} and {} cannot be used together", NameOf(*option), option->excludes));
        }
    }

    void Require(bool holds, const std::string& otherwise) const {
        if (!holds) {
            FailUsage(fmt::format("{0}: {1} (see velmora {0} --help)", command_, otherwise));
        }
    }

    std::string_view command_;
    std::vector<const Argument*> options_;
    std::vector<const Argument*> positionals_;
};

}  // namespace

std::string ExamplesText(std::span<const char* const> examples) {
    std::string text = "\nexamples:\n";
    for (const char* example : examples) {
        text += fmt::format("  velmora {}\n", example);
    }
    return text;
}

bool ReadArguments(CommandContext& context, const Words& words, std::vector<Argument> arguments) {
    bool help = false;
    arguments.push_back({"--help", &help, "Print this help"});
    const Command& command = context.command;
    const ArgumentReader reader(command.name, arguments);
    const Words values = reader.ReadOptions(words);
    if (!help) {
        reader.ReadPositionals(values);
        return true;
    }
    context.out.WriteLine(fmt::format("{}\n\nusage: velmora {} {}\n", command.summary, command.name, command.usage));
    TableRows rows;
    for (const Argument& argument : arguments) {
        rows.push_back({fmt::format("  {}", argument.form), argument.help});
    }
    PrintTable(rows, context.out);
    context.out.Write(ExamplesText(command.examples));
    return false;
}

}  // namespace velm
