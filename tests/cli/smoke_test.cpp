#include <gtest/gtest.h>

#include "cli/process.h"

namespace velm::test {

namespace {

Words Shipped(Words arguments) {
    arguments.insert(arguments.begin(), {"--data", VELMORA_DATA_FOLDER});
    return arguments;
}

}  // namespace

TEST(Command, SpeaksUtf8InBothDirections) {
    EXPECT_EQ(Out({"eval", "-3\u00b2"}), "-9\n");
    EXPECT_EQ(Out(Shipped({"convert", "Temperature", "C", "100", "--to", "F"})), "212\n");
    EXPECT_EQ(Refusal({"eval", "\u00e9"}), "1: eval: cannot evaluate \"\u00e9\"");
    EXPECT_EQ(Out({"eval", "x*2", "x=-"}, "1\r\n2\r\n"), "2\n4\n");
}

TEST(Command, FindsShippedFilesAndFilesByTheirPath) {
    EXPECT_EQ(Out(Shipped({"convert", "LENGTH", "mi", "26.2", "--to", "km"})), "42.1648128\n");
    const TemporaryFolder folder;
    folder.WriteText(u"small.toml", "title = 'Small'\n[[item]]\nname = 'One'\n");
    const std::string source = ToUtf8(folder.PathOf(u"small.toml"));
    const std::string file = ToUtf8(folder.PathOf(u"small.cnv"));
    EXPECT_EQ(Out({"import", source, file}), "");
    EXPECT_EQ(Out({"check", file}), file + ": ok, 1 items, 0 conversions\n");
}

TEST(Command, RefusesWithTheRightStatus) {
    EXPECT_EQ(Refusal(Shipped({"show", "Lenght"})).substr(0, 30), "1: there is no data file \"Leng");
    EXPECT_EQ(Refusal({"evall"}), "2: there is no command \"evall\"; did you mean \"eval\"?");
}

TEST(Command, StandsBesideItsDataFolder) {
    EXPECT_EQ(Out({"convert", "Weight", "kg", "0.45359237", "--to", "lb"}), "1\n");
}

}  // namespace velm::test
