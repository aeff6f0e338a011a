#include <gtest/gtest.h>

#ifdef _WIN32
#include "platform/wide_text_win32.h"
#else
#include <sys/wait.h>
#endif

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "platform/file.h"
#include "support/http_server.h"
#include "support/table.h"
#include "support/temporary_folder.h"

namespace velm::test {
namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr std::pair PARENTHESES = {"", ""};  // a command is one line

int RunShell(const std::string& commands) {
    return _wsystem(ToWide(FromUtf8(commands)).c_str());
}

void SetVariable(const char* name, const std::string& value) {
    _wputenv_s(ToWide(FromUtf8(name)).c_str(), ToWide(FromUtf8(value)).c_str());
}
#else
constexpr std::pair PARENTHESES = {"(", "\n)"};

int RunShell(const std::string& commands) {
    const int ended = std::system(commands.c_str());
    return WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
}

void SetVariable(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1);
}
#endif

/// Replays sessions at a command line: "$ command", continued in lines of "> ", then what it wrote to standard output
/// ("| "), to standard error ("! ") and its status when that is not 0 ("? "). Any other line is a remark.
/// The commands run in a folder of their own. $SERVER is a server of that folder's files, $SHIPPED the shipped data.
class Command : public testing::TestWithParam<const char*> {
protected:
    /// A folder that holds these options and data alone, or nothing and the data beside the program.
    void OpenFolder(bool ownData) {
        const char separator = FolderSeparator == u'/' ? ':' : ';';
        static const std::string PATH = std::getenv("PATH");
        fs::current_path(fs::path(folder_.Path()));
        server_.ServeFolder(folder_);
        SetVariable("PATH", fs::path(VELMORA_PROGRAM).parent_path().string() + separator + PATH);
        SetVariable("SERVER", server_.Address(""));
        SetVariable("SHIPPED", VELMORA_DATA_FOLDER);
        SetVariable("COMPLETION", VELMORA_TRANSCRIPTS "/../../../cli/velmora.bash");
        SetVariable("VELMORA_DATA", ownData ? "." : "");
        SetVariable("XDG_CONFIG_HOME", ToUtf8(folder_.PathOf(u"config")));
    }
    void TearDown() override { fs::current_path(fs::temp_directory_path()); }

    /// The session with the current output.
    std::string Replay(const std::string& session) {
        std::string replayed;
        std::string command;
        std::istringstream lines(session);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("| ") || line.starts_with("! ") || line.starts_with("? ")) {
                continue;
            }
            replayed += line + "\n";
            if (line.starts_with("$ ") || line.starts_with("> ")) {
                command += line.substr(2) + "\n";
                if (lines.peek() != '>') {
                    command.pop_back();
                    replayed += Run(command);
                    command.clear();
                }
            }
        }
        return replayed;
    }

private:
    static std::string Prefixed(const std::string& prefix, const std::string& text) {
        std::string prefixed;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            prefixed += prefix + line + "\n";
        }
        return prefixed;
    }

    std::string Run(const std::string& command) {
        const auto written = [this](CVelmStringView name) {
            const Bytes bytes = written_.Read(name);
            return std::string(bytes.begin(), bytes.end());
        };
        const int status =
            RunShell(PARENTHESES.first + command + PARENTHESES.second + " > \"" + ToUtf8(written_.PathOf(u"output")) +
                     "\" 2> \"" + ToUtf8(written_.PathOf(u"errors")) + "\"");
        std::string text = Prefixed("| ", written(u"output")) + Prefixed("! ", written(u"errors"));
        text += status == 0 ? "" : "? " + std::to_string(status) + "\n";
        return Replaced(Replaced(text, server_.Address(""), "$SERVER"), ToUtf8(folder_.Path()), "$FOLDER/");
    }

    TemporaryFolder folder_;
    TemporaryFolder written_;
    HttpServer server_;
};

TEST_P(Command, DoesWhatItsTranscriptTells) {
    const std::string name = GetParam();
    std::ifstream file(VELMORA_TRANSCRIPTS "/" + name + ".txt", std::ios::binary);
    const std::string session{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ASSERT_NE(session, "");
    OpenFolder(name != "both_systems" && name != "shipped");
    EXPECT_EQ(Replay(session), session);
}

#ifdef _WIN32
// Starting programs is slow there, so only the transcripts that differ.
INSTANTIATE_TEST_SUITE_P(Cli, Command, testing::Values("both_systems"));
#else
INSTANTIATE_TEST_SUITE_P(Cli, Command,
                         testing::Values("both_systems", "calc", "completion", "shipped", "convert", "eval", "feed",
                                         "files", "options", "rates", "stream", "text_form", "update", "update_files"),
                         [](const auto& transcript) { return std::string(transcript.param); });
#endif

}  // namespace
}  // namespace velm::test
