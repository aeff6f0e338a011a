#include "platform/file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/program_folder.h"
#include "support/temporary_folder.h"

namespace velm::test {
namespace {

std::string ReadAll(CVelmFile& file) {
    std::string text(64, '\0');
    text.resize(static_cast<std::size_t>(std::max<std::int64_t>(file.Read(text.data(), text.size()), 0)));
    return text;
}

bool WriteNew(const CVelmString& path, FileMode mode, std::string_view text) {
    const auto file = SystemFiles().Open(path, mode);
    return file != nullptr && file->Write(text.data(), text.size()) == static_cast<std::int64_t>(text.size());
}

/// Whether a folder has such an entry, and of which kind.
std::string Listed(const CVelmString& folder, CVelmStringView name) {
    const auto entries = SystemFiles().List(folder);
    for (const CVelmFolderEntry& entry : entries.value()) {
        if (entry.name == name) {
            return entry.isFolder ? "folder" : "file";
        }
    }
    return "";
}

TEST(File, EachModeOpensAsItSays) {
    const TemporaryFolder folder;
    const CVelmString path = folder.PathOf(u"größe.txt");
    EXPECT_EQ(SystemFiles().Open(path, FileMode::Read), nullptr);
    EXPECT_EQ(SystemFiles().Open(path, FileMode::Append), nullptr);
    EXPECT_TRUE(WriteNew(path, FileMode::CreateNew, "first"));
    EXPECT_FALSE(WriteNew(path, FileMode::CreateNew, "again"));
    EXPECT_TRUE(WriteNew(path, FileMode::Append, "+more"));
    EXPECT_EQ(ReadAll(*SystemFiles().Open(path, FileMode::Read)), "first+more");
    EXPECT_TRUE(WriteNew(path, FileMode::Write, "new"));
    EXPECT_EQ(ReadAll(*SystemFiles().Open(path, FileMode::Read)), "new");
    EXPECT_EQ(SystemFiles().Open(folder.Path(), FileMode::Read), nullptr) << "a folder is not a file";
    EXPECT_EQ(SystemFiles().Open(path + CVelmString(u"\0x", 2), FileMode::Read), nullptr)
        << "a NUL must not shorten the path";
}

TEST(File, SeeksAndTellsItsSizeAndTimes) {
    const TemporaryFolder folder;
    folder.WriteText(u"a", "0123456789");
    const auto file = SystemFiles().Open(folder.PathOf(u"a"), FileMode::Read);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Size(), 10U);
    EXPECT_TRUE(file->Seek(7));
    EXPECT_EQ(ReadAll(*file), "789");
    EXPECT_EQ(ReadAll(*file), "") << "the end of the file reads as nothing";
    constexpr std::uint64_t START_OF_2020 = 132'223'104'000'000'000;
    EXPECT_GT(file->Times().value().lastWrite, START_OF_2020);
    EXPECT_GT(file->Times().value().lastAccess, START_OF_2020);
}

TEST(File, IsReplacedInOneStepRemovedAndListed) {
    const TemporaryFolder folder;
    const CVelmString old = folder.PathOf(u"Länge.cnv");
    folder.WriteText(u"Länge.cnv", "old");
    folder.WriteText(u"new", "new");
    EXPECT_TRUE(SystemFiles().Replace(folder.PathOf(u"new"), old));
    EXPECT_EQ(SystemFiles().List(folder.Path()).value().size(), 1U);
    EXPECT_EQ(Listed(folder.Path(), u"Länge.cnv"), "file");
    EXPECT_EQ(ReadAll(*SystemFiles().Open(old, FileMode::Read)), "new");
    EXPECT_FALSE(SystemFiles().Replace(folder.PathOf(u"none"), old));
    EXPECT_TRUE(SystemFiles().Exists(old));
    EXPECT_TRUE(SystemFiles().Remove(old));
    EXPECT_FALSE(SystemFiles().Exists(old));
    EXPECT_FALSE(SystemFiles().Remove(old));

    const CVelmString inside = folder.Path().substr(0, folder.Path().size() - 1);
    const std::size_t separator = inside.rfind(FolderSeparator);
    EXPECT_EQ(Listed(inside.substr(0, separator), inside.substr(separator + 1)), "folder");
    EXPECT_FALSE(SystemFiles().List(folder.PathOf(u"none")).has_value());
}

TEST(File, TheProgramFolderHoldsThisProgram) {
    const CVelmString folder = ProgramFolder();
    EXPECT_EQ(Listed(folder, u"platform_tests") + Listed(folder, u"platform_tests.exe"), "file");
    EXPECT_EQ(WithSeparator(u""), CVelmString(1, FolderSeparator));
    EXPECT_EQ(WithSeparator(folder), folder) << "it ends with a separator";
}

}  // namespace
}  // namespace velm::test
