#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <exception>

#include "cli_error.h"
#include "commands.h"
#include "platform/terminal.h"
#include "stored_options.h"
#include "suggest.h"

namespace velm {

namespace {

/// Every subcommand, in the order of the list that --help prints.
constexpr std::array COMMANDS{
    Command{"eval", "FORMULA [NAME=VALUE]...", "Evaluate a formula", RunEval},
    Command{"convert", "FILE UNIT VALUE [--to UNIT]...", "Convert a value to other units", RunConvert},
    Command{"calc", "FILE [ID=VALUE]...", "Compute the outputs of a calculation file", RunCalc},
    Command{"show", "FILE", "Print the contents of a data file", RunShow},
    Command{"files", "[--json]", "List the files of the data folder", RunFiles},
    Command{"check", "PATH...", "Check data files; never changes one", RunCheck},
    Command{"import", "SOURCE.toml OUT.cnv|OUT.cal", "Create a data file from its text form", RunImport},
    Command{"export", "FILE [-o SOURCE.toml]", "Write the text form of a data file", RunExport},
    Command{"page", "INTRO.htm OUT.htm SOURCE.toml...", "Create a text reference from text forms", RunPage},
    Command{"update", "[--rates RATES] [FILE]...", "Merge new rates into the data files", RunUpdate},
    Command{"feed", "--rates RATES --base-url URL ...", "Create update files from a table of rates", RunFeed},
    Command{"options", "[NAME [VALUE]]", "Show or change the program's options", RunOptions},
};

std::string HelpText() {
    std::string text =
        "Converts units and calculates formulas.\n\n"
        "usage: velmora [--data DIR] COMMAND ...\n"
        "       velmora COMMAND --help\n"
        "       velmora --help | --version\n\n"
        "commands:\n";
    for (const Command& command : COMMANDS) {
        text += fmt::format("  {:<8} {:<32} {}\n", command.name, command.usage, command.summary);
    }
    return text +
           "\nFILE is a path, or a name in the data folder with or without its extension, in any letter case.\n"
           "The data folder is DIR, or that of the variable VELMORA_DATA, or that of the options: at first\n"
           "\"Conversions\" beside the program.\n";
}

/// What runs without a subcommand's name in front.
constexpr Command QUESTION{"", "QUESTION...", "Answer a question such as 26.2 mi in km", RunAsk};

const Command& FindCommand(const std::string& name) {
    for (const Command& command : COMMANDS) {
        if (command.name == name) {
            return command;
        }
    }
    return QUESTION;
}

CVelmString DefaultDataFolder() {
    const auto variable = EnvironmentVariable(u"VELMORA_DATA");
    return variable ? WithSeparator(*variable) : DataFolderOfOptions();
}

int RunWords(std::vector<std::string> words, CVelmOutput& out) {
    CVelmString dataFolder;
    while (!words.empty() && words.front().starts_with("--data")) {
        const bool joined = words.front().starts_with("--data=");
        const std::string folder = joined ? words.front().substr(7) : words.size() > 1 ? words[1] : "";
        if (folder.empty() || !(joined || words.front() == "--data")) {
            FailUsage("--data needs a folder");
        }
        dataFolder = WithSeparator(FromUtf8(folder));
        words.erase(words.begin(), words.begin() + (joined ? 1 : 2));
    }
    if (words.empty()) {
        FailUsage("no command given (see velmora --help)");
    }
    const std::string name = words.front();
    if (name == "--help" || name == "-h" || name == "help") {
        out.Write(HelpText());
        return STATUS_OK;
    }
    if (name == "--version") {
        out.WriteLine("velmora " VELMORA_VERSION);
        return STATUS_OK;
    }
    const Command& command = FindCommand(name);
    const CVelmServices services = SystemServices();
    FormulaContext formulas(services.clock);
    CommandContext context{command, services, formulas, dataFolder.empty() ? DefaultDataFolder() : dataFolder, out};
    if (&command != &QUESTION) {
        words.erase(words.begin());
    }
    return command.run(context, words);
}

int Run(const std::vector<std::string>& words) {
    try {
        CVelmOutput out;
        const int status = RunWords(words, out);
        out.Flush();
        return status;
    } catch (const CVelmCliError& error) {
        PrintError(error.what());
        return error.status;
    } catch (const std::exception& error) {
        PrintError(error.what());
        return STATUS_FAILED;
    }
}

}  // namespace

std::vector<std::string> CommandNames() {
    std::vector<std::string> names(COMMANDS.size());
    std::transform(COMMANDS.begin(), COMMANDS.end(), names.begin(), [](const Command& row) { return row.name; });
    return names;
}

}  // namespace velm

int main(int argc, char** argv) {
    return velm::Run(velm::CommandLineArguments(argc, argv));
}
