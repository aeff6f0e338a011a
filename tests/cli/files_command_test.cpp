#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/process.h"

namespace velm::test {

namespace {

class FilesCommand : public testing::Test {
protected:
    FilesCommand() {
        data.Add("Length.cnv",
                 "title = 'Lengths'\ncategory = 'Everyday'\n[[item]]\nname = 'm'\n[[item]]\nname = 'km'\n");
        data.Add("Tip.cal", "title = 'Tip'\ncategory = 'Money'\n[[item]]\nname = 'Bill'\nid = 'b'\n");
        data.Add("Area.cnv", "title = 'Areas'\ncategory = 'Everyday'\n[[item]]\nname = 'm2'\n");
        data.Folder().WriteText(u"damaged.cnv", "no header");
        data.Folder().WriteText(u"Notes.htm", "<p>notes</p>");
    }

    DataSources data;
};

TEST_F(FilesCommand, ListsTheFolderByCategoryAndThenTheReferences) {
    EXPECT_EQ(Out(data.With({"files"})),
              "Everyday  Area.cnv    conversion   Areas    1 units\n"
              "Everyday  Length.cnv  conversion   Lengths  2 units\n"
              "Money     Tip.cal     calculation  Tip      1 units\n"
              "\nText references\n"
              "  Notes\n");
}

TEST_F(FilesCommand, WritesJson) {
    const auto json = nlohmann::json::parse(Out(data.With({"files", "--json"})));
    EXPECT_EQ(json.at("references"), nlohmann::json::array({"Notes"}));
    ASSERT_EQ(json.at("files").size(), 3U);
    const nlohmann::json length = {
        {"name", "Length.cnv"}, {"kind", 1}, {"category", "Everyday"}, {"title", "Lengths"}, {"units", 2}};
    EXPECT_EQ(json.at("files").at(1), length);
}

TEST(FilesCommandAlone, RefusesAFolderThatIsNotThere) {
    EXPECT_EQ(Refusal({"--data", "/no/such/folder", "files"}), "1: cannot read the data folder \"/no/such/folder/\"");
}

}  // namespace

}  // namespace velm::test
