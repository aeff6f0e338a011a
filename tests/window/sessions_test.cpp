#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

#include "support/program_test.h"
#include "support/table.h"

namespace velm::test {
namespace {

struct Session {
    std::string name;
    std::vector<Step> steps;
};

/// Sessions of a user at the program, from text files: "= title", then lines of acts, with " -> " before what is to be
/// seen then and " -> " before a remark. Each session has a program and a folder of its own.
std::vector<Session> ReadSessions() {
    std::vector<Session> sessions;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_SESSIONS)) {
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("= ")) {
                std::string name = entry.path().stem().string() + line;
                std::replace_if(
                    name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
                sessions.push_back({name, {}});
            } else if (!line.empty() && line[0] != '#') {
                const Texts parts = Split(line, " ->");
                const std::string why = parts.size() > 2 ? parts[2] : "";
                sessions.back().steps.push_back(
                    {parts[0], parts.size() > 1 ? std::optional(parts[1]) : std::nullopt, why});
            }
        }
    }
    return sessions;
}

class Sessions : public ProgramTest, public testing::WithParamInterface<Session> {};

TEST_P(Sessions, Play) {
    Play(GetParam().steps);
}

INSTANTIATE_TEST_SUITE_P(User, Sessions, testing::ValuesIn(ReadSessions()),
                         [](const auto& session) { return session.param.name; });

}  // namespace
}  // namespace velm::test
