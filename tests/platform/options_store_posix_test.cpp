#include <gtest/gtest.h>

#include <filesystem>

#include "platform/options_store.h"
#include "support/temporary_folder.h"

namespace velm::test {
namespace {

std::string ReadBack(CVelmOptionsStore& store, std::size_t limit = 900) {
    const auto bytes = store.Read(limit);
    return bytes ? std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size()) : "<nothing>";
}

TEST(OptionsFile, KeepsBytesAndReplacesThemInOneStep) {
    const TemporaryFolder folder;
    const auto store = OpenOptionsStore(folder.PathOf(u"new/folder/options"));
    EXPECT_EQ(ReadBack(*store), "<nothing>");
    EXPECT_EQ(store->Write("first\0", 6), 0);
    EXPECT_EQ(store->Write("second", 6), 0);
    EXPECT_EQ(ReadBack(*store), "second");
    EXPECT_EQ(ReadBack(*store, 5), "<nothing>");
    EXPECT_EQ(folder.Names(), std::vector<CVelmString>{u"new"});
    EXPECT_NE(OpenOptionsStore(u"/proc/no/such/options")->Write("x", 1), 0);
    EXPECT_NE(OpenOptionsStore(u"")->Write("x", 1), 0);
    EXPECT_EQ(ReadBack(*OpenOptionsStore(folder.Path())), "<nothing>") << "a folder is not a file";

    const auto link = OpenOptionsStore(folder.PathOf(u"link"));
    std::filesystem::create_symlink("new/folder/options", ToUtf8(folder.PathOf(u"link")));
    EXPECT_EQ(link->Write("third", 5), 0);
    EXPECT_EQ(ReadBack(*store), "third") << "a link stays a link, and its file is replaced";
    EXPECT_TRUE(std::filesystem::is_symlink(ToUtf8(folder.PathOf(u"link"))));
}

}  // namespace
}  // namespace velm::test
