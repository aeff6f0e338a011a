#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file.h"
#include "support/temporary_folder.h"

namespace velm {
namespace {

using test::TemporaryFolder;

TEST(PosixFile, AReplacedFileKeepsItsRights) {
    const TemporaryFolder folder;
    folder.WriteText(u"old", "old");
    folder.WriteText(u"new", "new");
    ASSERT_EQ(chmod(ToUtf8(folder.PathOf(u"old")).c_str(), 0640), 0);
    ASSERT_TRUE(SystemFiles().Replace(folder.PathOf(u"new"), folder.PathOf(u"old")));
    struct stat status {};
    ASSERT_EQ(stat(ToUtf8(folder.PathOf(u"old")).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST(PosixFile, LinksLeadToTheFileThatIsReplaced) {
    const TemporaryFolder folder;
    folder.WriteText(u"file", "content");
    ASSERT_EQ(symlink("file", ToUtf8(folder.PathOf(u"link")).c_str()), 0);
    ASSERT_EQ(symlink("nothing", ToUtf8(folder.PathOf(u"broken")).c_str()), 0);
    CVelmFileSystem& files = SystemFiles();
    EXPECT_TRUE(files.ResolveLinks(folder.PathOf(u"link")).ends_with(u"/file"));
    EXPECT_EQ(files.ResolveLinks(folder.PathOf(u"file")), folder.PathOf(u"file"));
    EXPECT_EQ(files.ResolveLinks(folder.PathOf(u"broken")), folder.PathOf(u"broken"));
    EXPECT_EQ(files.ResolveLinks(folder.PathOf(u"missing")), folder.PathOf(u"missing"));
}

TEST(PosixFile, APipeIsNotReadAsAFile) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(ToUtf8(folder.PathOf(u"pipe")).c_str(), 0600), 0);
    EXPECT_EQ(SystemFiles().Open(folder.PathOf(u"pipe"), FileMode::Read), nullptr) << "and nothing waits for a writer";
}

TEST(PosixFile, AFullDiskIsAFailedWrite) {
    const auto full = SystemFiles().Open(u"/dev/full", FileMode::Append);
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->Write("x", 1), -1);
}

}  // namespace
}  // namespace velm
