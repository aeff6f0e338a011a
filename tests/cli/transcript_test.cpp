#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "cli/shell.h"
#include "platform/file.h"
#include "support/http_server.h"
#include "support/table.h"
#include "support/temporary_folder.h"

namespace velm::test {
namespace {

namespace fs = std::filesystem;

/// Replays sessions at a command line: "$ command", continued in lines of "> ", then what it wrote to standard output
/// ("| "), to standard error ("! ") and its status when that is not 0 ("? "). Any other line is a remark.
/// The commands run in a folder of their own. $SERVER is a server of that folder's files, $SHIPPED the shipped data.
class Command : public testing::TestWithParam<std::string> {
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
        SetVariable("XDG_CACHE_HOME", ToUtf8(folder_.PathOf(u"cache")));
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
    /// The lines of a file, each behind a prefix.
    std::string Written(CVelmStringView name, const std::string& prefix) const {
        std::string prefixed;
        const Bytes bytes = written_.Read(name);
        std::istringstream lines(std::string(bytes.begin(), bytes.end()));
        for (std::string line; std::getline(lines, line);) {
            prefixed += prefix + line + "\n";
        }
        return prefixed;
    }

    std::string Run(const std::string& command) {
        const int status = RunShell(command, " > \"" + ToUtf8(written_.PathOf(u"output")) + "\" 2> \"" +
                                                 ToUtf8(written_.PathOf(u"errors")) + "\"");
        std::string text = Written(u"output", "| ") + Written(u"errors", "! ");
        text += status == 0 ? "" : "? " + std::to_string(status) + "\n";
        return Replaced(Replaced(text, server_.Address(""), "$SERVER"), ToUtf8(folder_.Path()), "$FOLDER/");
    }

    TemporaryFolder folder_;
    TemporaryFolder written_;
    HttpServer server_;
};

std::vector<std::string> Transcripts() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(VELMORA_TRANSCRIPTS)) {
        names.push_back(entry.path().stem().string());
    }
    return names;
}

TEST_P(Command, DoesWhatItsTranscriptTells) {
    std::ifstream file(VELMORA_TRANSCRIPTS "/" + GetParam() + ".txt", std::ios::binary);
    const std::string session{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ASSERT_NE(session, "");
    OpenFolder(GetParam() != "ask" && GetParam() != "both_systems" && GetParam() != "shipped");
    EXPECT_EQ(Replay(session), session);
}

INSTANTIATE_TEST_SUITE_P(Cli, Command, testing::ValuesIn(Transcripts()),
                         [](const auto& transcript) { return transcript.param; });

}  // namespace
}  // namespace velm::test
