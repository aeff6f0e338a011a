#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "support/program_test.h"
#include "support/table.h"

namespace velm::test {
namespace {

struct Session {
    std::string name;
    std::vector<SessionLine> lines;
};

/// Failure messages show the name only.
std::ostream& operator<<(std::ostream& out, const Session& session) {
    return out << session.name;
}

/// Reads the sessions, which README.md describes. Each has a program and a folder of its own.
std::vector<Session> ReadSessions() {
    std::vector<Session> sessions;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_SESSIONS)) {
        const std::string file = "tests/window/sessions/" + entry.path().filename().string();
        std::ifstream lines(entry.path());
        int number = 0;
        for (std::string line; std::getline(lines, line);) {
            ++number;
            const Texts cells = Split(line, " ->");
            if (line.starts_with("= ")) {
                const std::string name = entry.path().stem().string() + line;
                sessions.push_back({std::regex_replace(name, std::regex("\\W"), "_"), {}});
            } else if (!line.empty() && !line.starts_with("# ")) {
                const bool expects = cells.size() > 1;
                sessions.back().lines.push_back(
                    {file, number, cells[0], expects ? std::optional(cells[1]) : std::nullopt});
            }
        }
    }
    return sessions;
}

class Sessions : public ProgramTest, public testing::WithParamInterface<Session> {};

TEST_P(Sessions, Play) {
    Play(GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(User, Sessions, testing::ValuesIn(ReadSessions()),
                         [](const auto& session) { return session.param.name; });

}  // namespace
}  // namespace velm::test
