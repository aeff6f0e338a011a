#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "support/program_test.h"
#include "support/table.h"

namespace velm::test {
namespace {

/// A name, and lines of acts.
using Session = std::pair<std::string, std::vector<Texts>>;

/// Sessions of a user at the program, from text files: "= title", then lines of acts, with " -> " before what is to be
/// seen then and " -> " before a remark. Each session has a program and a folder of its own.
std::vector<Session> ReadSessions() {
    std::vector<Session> sessions;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_SESSIONS)) {
        for (const Texts& line : ReadTable(entry.path().string())) {
            if (line[0].starts_with("= ")) {
                const std::string name = entry.path().stem().string() + line[0];
                sessions.push_back({std::regex_replace(name, std::regex("\\W"), "_"), {}});
            } else {
                sessions.back().second.push_back(line);
            }
        }
    }
    return sessions;
}

class Sessions : public ProgramTest, public testing::WithParamInterface<Session> {};

TEST_P(Sessions, Play) {
    Play(GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(User, Sessions, testing::ValuesIn(ReadSessions()),
                         [](const auto& session) { return session.param.first; });

}  // namespace
}  // namespace velm::test
