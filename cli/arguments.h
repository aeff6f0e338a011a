#pragma once

#include <memory>
#include <string>
#include <vector>

#include "command.h"

namespace CLI {
class App;
class Option;
class ParseError;
}  // namespace CLI

namespace velm {

/// Declares the options of a subcommand, with the habits that all of them share.
class CVelmArguments {
public:
    explicit CVelmArguments(const Command& command);
    ~CVelmArguments();
    CVelmArguments(const CVelmArguments&) = delete;
    CVelmArguments& operator=(const CVelmArguments&) = delete;

    /// A positional argument that must be given.
    void AddPositional(const char* name, std::string& value, const std::string& description);

    /// Positional arguments that may be given as often as wanted: not at all, or at least once.
    void AddPositionals(const char* name, std::vector<std::string>& values, const std::string& description);
    void AddRequiredPositionals(const char* name, std::vector<std::string>& values, const std::string& description);

    /// An option with a value, which the help calls `valueName`; given once, or as often as wanted.
    void AddOption(const char* name, std::string& value, const char* valueName, const std::string& description);
    void AddOption(const char* name, std::vector<std::string>& values, const char* valueName,
                   const std::string& description);
    void AddFlag(const char* name, bool& value, const std::string& description);

    /// Two options that cannot be given together.
    void Exclude(const char* one, const char* other);

    /// Reads the arguments; a word that begins with "-" and is no option is a value. False when only the help was
    /// asked for, which is then in `out`. Wrong usage ends the command.
    bool Parse(const std::vector<std::string>& words, CVelmOutput& out);

private:
    std::vector<std::string> OptionsFirst(const std::vector<std::string>& words) const;
    [[noreturn]] void RefuseOption(const std::string& name) const;
    [[noreturn]] void Refuse(const CLI::ParseError& error) const;

    std::string name_;
    std::unique_ptr<CLI::App> app_;
};

}  // namespace velm
