#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <exception>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "platform/terminal.h"
#include "platform/text_distance.h"
#include "stored_options.h"

namespace velm {

namespace {

/// Every subcommand, in the order of the list that --help prints.
constexpr std::array COMMANDS{
    Command{"ask",
            "[QUESTION]...",
            "Answer a question; \"ask\" may be left out",
            {"26.2 mi in km", "'3 kg * 9.81 m/s^2 in lbf'", "ask - < questions.txt"},
            RunAsk},
    Command{"eval",
            "FORMULA [NAME=VALUE]...",
            "Evaluate a formula",
            {"eval '2*pi*6371'", "eval 'r^2*pi' r=2.5 --raw", "eval '{7/4/2026}+100' --as date"},
            RunEval},
    Command{"convert",
            "FILE UNIT VALUE [--to UNIT]...",
            "Convert a value to other units",
            {"convert Length mi 26.2", "convert Length ftin '[5 11]' --to cm", "convert Length ft - --to m < feet.txt"},
            RunConvert},
    Command{"calc",
            "FILE [ID=VALUE]...",
            "Compute the outputs of a calculation file",
            {"calc TipCalc bill=48", "calc TipCalc bill=12*4 people=3", "calc TipCalc bill=48 --json"},
            RunCalc},
    Command{"show",
            "FILE",
            "Print the contents of a data file",
            {"show Length", "show Length --names", "show TipCalc --json"},
            RunShow},
    Command{"files",
            "[--json]",
            "List the files of the data folder",
            {"files", "files --names", "--data ~/units files"},
            RunFiles},
    Command{"check",
            "PATH...",
            "Check data files; never changes one",
            {"check ~/units", "check my.cnv my.cal", "check ."},
            RunCheck},
    Command{"import",
            "SOURCE.toml OUT.cnv|OUT.cal",
            "Create a data file from its text form",
            {"import length.toml Length.cnv", "import tip.toml ~/units/Tip.cal", "import my.toml my.cnv"},
            RunImport},
    Command{"export",
            "FILE [-o SOURCE.toml]",
            "Write the text form of a data file",
            {"export Length", "export Length -o length.toml", "export my.cal -o my.toml"},
            RunExport},
    Command{"page",
            "INTRO.htm OUT.htm SOURCE.toml...",
            "Create a text reference from text forms",
            {"page intro.htm Sources.htm length.toml", "page intro.htm Units.htm a.toml b.toml",
             "page intro.htm ~/units/Sources.htm ~/sources/*.toml"},
            RunPage},
    Command{"update",
            "[--rates RATES] [FILE]...",
            "Merge new rates into the data files",
            {"update --rates eurofxref-daily.xml", "update --rates - Currency < rates.txt",
             "update --url http://rates.example.org/velm/convupd.txt"},
            RunUpdate},
    Command{"feed",
            "--rates RATES --base-url URL ...",
            "Create update files from a table of rates",
            {"feed --rates rates.txt --base-url http://rates.example.org/velm",
             "feed --rates eurofxref.csv --base-url http://rates.example.org/velm --out /srv/velm",
             "feed --rates metals.txt --base-url http://rates.example.org/metals --file Metals"},
            RunFeed},
    Command{"options",
            "[NAME [VALUE]]",
            "Show or change the program's options",
            {"options", "options data-folder ~/units", "options data-folder ''"},
            RunOptions},
};

/// What a line without a command's name is for.
constexpr const Command& ASK = COMMANDS.front();

constexpr std::array EXAMPLES{"26.2 mi in km", "tip 64.50 18% 3 people", "convert Length mi 26.2"};

constexpr std::string_view USAGE =
    "usage: velmora [--data DIR] QUESTION...\n"
    "       velmora [--data DIR] COMMAND ...\n"
    "       velmora COMMAND --help\n"
    "       velmora --help | --version\n";

std::string HelpText() {
    std::string text = "Converts units, calculates formulas and answers questions about them.\n\n";
    text += USAGE;
    text +=
        "\nWithout a question, velmora asks for one at a terminal and takes one from every line of other input.\n\n"
        "commands:\n";
    for (const Command& command : COMMANDS) {
        text += fmt::format("  {:<8} {:<32} {}\n", command.name, command.usage, command.summary);
    }
    return text +
           "\nFILE is a path, or a name in the data folder with or without its extension, in any letter case.\n"
           "The data folder is DIR, or that of the variable VELMORA_DATA, or that of the options: at first\n"
           "\"Conversions\" beside the program.\n" +
           ExamplesText(EXAMPLES);
}

const Command* FindCommand(std::string_view name) {
    const auto found = std::ranges::find(COMMANDS, name, &Command::name);
    return found == COMMANDS.end() ? nullptr : &*found;
}

/// For a question without an answer that may have been meant as a command: a line that says so; empty otherwise.
std::string HintAtCommand(const std::string& word) {
    constexpr int FEW_LETTERS = 2;
    const CVelmString typed = FromUtf8(word);
    for (const Command& command : COMMANDS) {
        const std::string name = command.name;
        const int distance = TextDistance(typed, FromUtf8(name));
        if (distance <= FEW_LETTERS && static_cast<std::size_t>(distance) * 3 <= name.size()) {
            return fmt::format("  There is a command {}: see velmora {} --help\n", Quoted(name), name);
        }
    }
    return {};
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
    const std::string name = words.empty() ? "" : words.front();
    if (name == "--help" || name == "-h" || name == "help") {
        out.Write(HelpText());
        return STATUS_OK;
    }
    if (name == "--version") {
        out.WriteLine("velmora " VELMORA_VERSION);
        return STATUS_OK;
    }
    const Command* const command = FindCommand(name);
    const CVelmServices services = SystemServices();
    FormulaContext formulas(services.clock);
    CommandContext context{command != nullptr ? *command : ASK, services, formulas,
                           dataFolder.empty() ? DefaultDataFolder() : dataFolder, out};
    if (command != nullptr) {
        words.erase(words.begin());
    }
    try {
        return context.command.run(context, words);
    } catch (CVelmCliError& error) {
        if (command == nullptr) {
            error.details += words.empty() ? std::string(USAGE) + ExamplesText(EXAMPLES) : HintAtCommand(name);
        }
        throw;
    }
}

int Run(const std::vector<std::string>& words) {
    try {
        CVelmOutput out;
        const int status = RunWords(words, out);
        out.Flush();
        return status;
    } catch (const CVelmCliError& error) {
        PrintError(error.what());
        WriteStandardError(error.details);
        return error.status;
    } catch (const std::exception& error) {
        PrintError(error.what());
        return STATUS_FAILED;
    }
}

}  // namespace

}  // namespace velm

int main(int argc, char** argv) {
    return velm::Run(velm::CommandLineArguments(argc, argv));
}
