#include <gtest/gtest.h>

#include "data/data_file.h"
#include "support/table.h"

namespace velm::test {
namespace {

/// "r=2; angle=90" as identifiers and texts; none of an empty text.
std::vector<std::pair<std::string, std::string>> Assignments(const std::string& text) {
    std::vector<std::pair<std::string, std::string>> assignments;
    for (const std::string& assignment : Split(text, ";")) {
        const std::size_t equals = assignment.find('=');
        if (equals != std::string::npos) {
            assignments.emplace_back(assignment.substr(0, equals), assignment.substr(equals + 1));
        }
    }
    return assignments;
}

TEST(Calculations, GiveInEveryAngleModeWhatTheInputsDetermineAndErrorsForTheRest) {
    for (const auto& row : ReadTable(VELMORA_TABLES "/calculations.txt", " |")) {
        SCOPED_TRACE(row.at(0) + " " + row.at(1));
        DataFile file(FromUtf8(row.at(0) + ".cal"));
        for (const auto& [identifier, text] : Assignments(row.at(1))) {
            CVelmItem& input = file.Find(identifier);
            ASSERT_FALSE(input.IsOutput()) << identifier;
            input.valueText = FromUtf8(text);
        }
        const auto expected = Assignments(row.at(2));
        ASSERT_FALSE(expected.empty());
        for (int mode = 0; mode < 3; ++mode) {
            CycleAngleMode(file.Context());
            file->Recalculate(file.Context());
            for (const auto& [identifier, text] : expected) {
                const CVelmItem& output = file.Find(identifier);
                EXPECT_TRUE(output.IsOutput()) << identifier;
                EXPECT_EQ(file.Shown(output), text) << identifier;
            }
        }
    }
}

}  // namespace
}  // namespace velm::test
