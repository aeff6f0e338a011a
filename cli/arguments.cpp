#include "arguments.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>

#include "cli_error.h"
#include "suggest.h"

namespace velm {

namespace {

/// Two dashes and a word of at least two letters: somebody meant an option. Anything else with a dash before it is a
/// negative value.
bool LooksLikeOption(const std::string& name) {
    const auto isWordCharacter = [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; };
    return name.size() >= 4 && name.starts_with("--") && name[2] != '-' &&
           std::all_of(name.begin() + 2, name.end(), isWordCharacter);
}

}  // namespace

CVelmArguments::CVelmArguments(const Command& command)
    : name_(command.name), app_(std::make_unique<CLI::App>(command.summary, "velmora " + name_)) {
    app_->set_help_flag("--help", "Print this help");
    app_->allow_windows_style_options(false);
}

CVelmArguments::~CVelmArguments() = default;

void CVelmArguments::AddPositional(const char* name, std::string& value, const std::string& description) {
    app_->add_option(name, value, description)->type_name("")->required();
}

void CVelmArguments::AddPositionals(const char* name, std::vector<std::string>& values,
                                    const std::string& description) {
    app_->add_option(name, values, description)->type_name("");
}

void CVelmArguments::AddRequiredPositionals(const char* name, std::vector<std::string>& values,
                                            const std::string& description) {
    app_->add_option(name, values, description)->type_name("")->required();
}

void CVelmArguments::AddOption(const char* name, std::string& value, const char* valueName,
                               const std::string& description) {
    app_->add_option(name, value, description)->type_name(valueName);
}

void CVelmArguments::AddOption(const char* name, std::vector<std::string>& values, const char* valueName,
                               const std::string& description) {
    // Without extra arguments a value in brackets is taken as it is, not as a list.
    app_->add_option(name, values, description)->type_name(valueName)->allow_extra_args(false);
}

void CVelmArguments::AddFlag(const char* name, bool& value, const std::string& description) {
    app_->add_flag(name, value, description);
}

void CVelmArguments::Exclude(const char* one, const char* other) {
    app_->get_option(one)->excludes(app_->get_option(other));
}

void CVelmArguments::RefuseOption(const std::string& name) const {
    std::vector<std::string> known;
    for (const CLI::Option* option : app_->get_options()) {
        for (const std::string& longName : option->get_lnames()) {
            known.push_back("--" + longName);
        }
    }
    if (name == "--data") {
        FailUsage(fmt::format("{}: --data stands before the command", name_));
    }
    FailUsage(fmt::format("{}: there is no option {}; {}", name_, name, DidYouMean(name, known)));
}

/// Values may begin with a dash, so they are told apart from options here and handed over behind a "--".
std::vector<std::string> CVelmArguments::OptionsFirst(const std::vector<std::string>& words) const {
    std::vector<std::string> options;
    std::vector<std::string> values;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "--") {
            values.insert(values.end(), words.begin() + static_cast<std::ptrdiff_t>(i) + 1, words.end());
            break;
        }
        const std::string name = word.substr(0, word.find('='));
        const CLI::Option* option =
            word.starts_with("-") && word.size() > 1 ? app_->get_option_no_throw(name) : nullptr;
        if (option == nullptr) {
            if (LooksLikeOption(name)) {
                RefuseOption(name);
            }
            values.push_back(word);
            continue;
        }
        if (option->get_items_expected_max() == 0 || name != word) {
            options.push_back(word);
            continue;
        }
        if (i + 1 == words.size() || words[i + 1].empty()) {
            FailUsage(fmt::format("{}: {} needs a value", name_, name));
        }
        options.push_back(name + (name.starts_with("--") ? "=" : "") + words[++i]);
    }
    options.emplace_back("--");
    options.insert(options.end(), values.begin(), values.end());
    return options;
}

bool CVelmArguments::Parse(const std::vector<std::string>& words, CVelmOutput& out) {
    std::vector<std::string> arranged = OptionsFirst(words);
    std::reverse(arranged.begin(), arranged.end());
    try {
        app_->parse(std::move(arranged));
    } catch (const CLI::CallForHelp&) {
        out.Write(app_->help());
        return false;
    } catch (const CLI::ParseError& error) {
        Refuse(error);
    }
    return true;
}

void CVelmArguments::Refuse(const CLI::ParseError& error) const {
    std::string text = error.what();
    for (const std::string& word : app_->remaining()) {
        if (word != "--") {
            text = fmt::format("{} is one argument too many", Quoted(word));
            break;
        }
    }
    FailUsage(fmt::format("{}: {} (see velmora {} --help)", name_, text, name_));
}

}  // namespace velm
