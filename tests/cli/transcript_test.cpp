#include "cli/transcript.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace velm::test {
namespace {

class Command : public testing::TestWithParam<const char*> {};

TEST_P(Command, DoesWhatItsTranscriptTells) {
    const std::string name = GetParam();
    std::ifstream file(VELMORA_TRANSCRIPTS "/" + name + ".txt", std::ios::binary);
    const std::string session{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ASSERT_NE(session, "");
    EXPECT_EQ(Transcript(name != "both_systems" && name != "shipped").Replay(session), session);
}

#ifdef _WIN32
// Each start takes its time, so only what differs there.
INSTANTIATE_TEST_SUITE_P(Cli, Command, testing::Values("both_systems"));
#else
INSTANTIATE_TEST_SUITE_P(Cli, Command,
                         testing::Values("both_systems", "calc", "shipped", "convert", "eval", "feed", "files",
                                         "options", "stream", "text_form", "update"),
                         [](const auto& transcript) { return std::string(transcript.param); });
#endif

}  // namespace
}  // namespace velm::test
