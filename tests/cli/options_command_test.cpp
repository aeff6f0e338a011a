#include <gtest/gtest.h>

#include "cli/process.h"
#include "cli/user_options.h"

namespace velm::test {

namespace {

class OptionsCommand : public testing::Test {
protected:
    UserOptionsForTest options;
};

TEST_F(OptionsCommand, KeepsTheRecordOfTheProgram) {
    EXPECT_EQ(Out({"options", "update-url"}), "http://updates.corvane.example/velm/convupd.txt\n");
    EXPECT_TRUE(options.Stored().empty()) << "looking stores nothing";

    EXPECT_EQ(Out({"options", "update-url", "http://127.0.0.1:8080/convupd.txt"}), "");
    EXPECT_EQ(Out({"options", "two-line-rows", "on"}), "");
    EXPECT_EQ(Out({"options", "update-url"}), "http://127.0.0.1:8080/convupd.txt\n");
    const Bytes record = options.Stored();
    ASSERT_EQ(record.size(), 900U);
    EXPECT_EQ(record[640], 'h');
    EXPECT_EQ(record[896], 1);
    EXPECT_EQ(record[384], 0) << "what was never set stays free for the default";

    EXPECT_EQ(Out({"options", "update-url", ""}), "");
    EXPECT_EQ(Out({"options"}).substr(0, 14), "data-folder   ");
    EXPECT_EQ(Out({"options", "update-url"}), "http://updates.corvane.example/velm/convupd.txt\n");
    EXPECT_EQ(Out({"options", "two-line-rows"}), "on\n");
}

TEST_F(OptionsCommand, TheDataFolderIsThatOfEveryCommand) {
    DataSources data;
    data.Add("Mine.cnv", "title = 'Mine'\n[[item]]\nname = 'm'\nid = 'm'\n");
    const std::string folder = ToUtf8(data.Folder().Path());
    EXPECT_EQ(Out({"options", "data-folder", folder.substr(0, folder.size() - 1)}), "");
    EXPECT_EQ(Out({"options", "data-folder"}), folder + "\n");
    EXPECT_EQ(Out({"convert", "Mine", "m", "5", "--to", "m"}), "5\n");
    setenv("VELMORA_DATA", "/no/such/folder", 1);
    EXPECT_EQ(Refusal({"files"}), "1: cannot read the data folder \"/no/such/folder/\"");
    unsetenv("VELMORA_DATA");
}

TEST_F(OptionsCommand, RefusesWhatCannotBeKept) {
    EXPECT_EQ(Refusal({"options", "update-ulr"}), "1: there is no option \"update-ulr\"; did you mean \"update-url\"?");
    EXPECT_EQ(Refusal({"options", "update-url", "https://x"}), "1: \"https://x\" does not begin with http://");
    EXPECT_EQ(Refusal({"options", "two-line-rows", "2"}), "1: two-line-rows is on or off, not \"2\"");
    EXPECT_EQ(Refusal({"options", "data-folder", "/no/such"}), "1: there is no folder \"/no/such\"");
    const std::string url = "http://" + std::string(121, 'x');
    EXPECT_EQ(Refusal({"options", "update-url", url}),
              "1: \"" + url + "\" is longer than the 127 characters that can be kept");
    EXPECT_EQ(Refusal({"options", "two-line-rows", "on", "off"}), "2: options takes a name and a value");
    EXPECT_TRUE(options.Stored().empty());
}

}  // namespace

}  // namespace velm::test
