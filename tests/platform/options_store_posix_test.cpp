#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

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
}

TEST(OptionsFile, ALinkStaysALinkAndItsFileIsReplaced) {
    const TemporaryFolder folder;
    folder.WriteText(u"kept elsewhere", "first");
    std::filesystem::create_symlink("kept elsewhere", ToUtf8(folder.PathOf(u"options")));
    const auto store = OpenOptionsStore(folder.PathOf(u"options"));
    EXPECT_EQ(store->Write("second", 6), 0);
    EXPECT_EQ(ReadBack(*store), "second");
    EXPECT_EQ(ReadBack(*OpenOptionsStore(folder.PathOf(u"kept elsewhere"))), "second");
    EXPECT_TRUE(std::filesystem::is_symlink(ToUtf8(folder.PathOf(u"options"))));
}

TEST(OptionsFile, LiesInTheFolderForConfiguration) {
    setenv("HOME", "/home/someone", 1);
    setenv("XDG_CONFIG_HOME", "/somewhere", 1);
    EXPECT_EQ(ToUtf8(DefaultOptionsLocation()), "/somewhere/velmora/options");
    for (const char* unusable : {"", "relative"}) {
        setenv("XDG_CONFIG_HOME", unusable, 1);
        EXPECT_EQ(ToUtf8(DefaultOptionsLocation()), "/home/someone/.config/velmora/options");
    }
    unsetenv("HOME");
    EXPECT_TRUE(DefaultOptionsLocation().empty());
}

}  // namespace
}  // namespace velm::test
