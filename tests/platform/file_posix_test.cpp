#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file.h"
#include "support/temporary_folder.h"

namespace velm::test {
namespace {

TEST(PosixFile, RightsLinksPipesAndFullDisks) {
    const TemporaryFolder folder;
    CVelmFileSystem& files = SystemFiles();
    const auto path = [&](CVelmStringView name) { return ToUtf8(folder.PathOf(name)); };
    folder.WriteText(u"old", "old");
    folder.WriteText(u"new", "new");
    ASSERT_EQ(chmod(path(u"old").c_str(), 0640), 0);
    ASSERT_TRUE(files.Replace(folder.PathOf(u"new"), folder.PathOf(u"old")));
    struct stat status {};
    ASSERT_EQ(stat(path(u"old").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U) << "a replaced file keeps its rights";

    ASSERT_EQ(symlink("old", path(u"link").c_str()), 0);
    ASSERT_EQ(symlink("nothing", path(u"broken").c_str()), 0);
    EXPECT_TRUE(files.ResolveLinks(folder.PathOf(u"link")).ends_with(u"/old"));
    for (const char16_t* name : {u"old", u"broken", u"missing"}) {
        EXPECT_EQ(files.ResolveLinks(folder.PathOf(name)), folder.PathOf(name));
    }

    ASSERT_EQ(mkfifo(path(u"pipe").c_str(), 0600), 0);
    EXPECT_EQ(files.Open(folder.PathOf(u"pipe"), FileMode::Read), nullptr) << "and nothing waits for a writer";

    EXPECT_EQ(files.Open(folder.PathOf(u"pipe"), FileMode::Append), nullptr) << "nor for a reader";
    folder.WriteText(u"new", "new");
    EXPECT_FALSE(files.Replace(folder.PathOf(u"new"), folder.PathOf(u"pipe"))) << "and it stays a pipe";

    const auto full = files.Open(u"/dev/full", FileMode::Append);
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->Write("x", 1), -1);
}

}  // namespace
}  // namespace velm::test
