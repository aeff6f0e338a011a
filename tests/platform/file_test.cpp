#include "platform/file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/program_folder.h"
#include "support/temporary_folder.h"

namespace velm {
namespace {

using test::TemporaryFolder;

std::string ReadAll(CVelmFile& file) {
    std::string text(64, '\0');
    text.resize(static_cast<std::size_t>(std::max<std::int64_t>(file.Read(text.data(), text.size()), 0)));
    return text;
}

bool WriteNew(const CVelmString& path, FileMode mode, std::string_view text) {
    const auto file = SystemFiles().Open(path, mode);
    return file != nullptr && file->Write(text.data(), text.size()) == static_cast<std::int64_t>(text.size());
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
    const auto times = file->Times();
    ASSERT_TRUE(times.has_value());
    const std::uint64_t startOf2020 = 132'223'104'000'000'000;
    EXPECT_GT(times->lastWrite, startOf2020);
    EXPECT_GT(times->lastAccess, startOf2020);
}

TEST(File, ReplaceIsOneStepAndRemoveAndExistsFollow) {
    const TemporaryFolder folder;
    folder.WriteText(u"old", "old");
    folder.WriteText(u"new", "new");
    EXPECT_TRUE(SystemFiles().Replace(folder.PathOf(u"new"), folder.PathOf(u"old")));
    EXPECT_EQ(folder.Names(), std::vector<CVelmString>{u"old"});
    EXPECT_EQ(ReadAll(*SystemFiles().Open(folder.PathOf(u"old"), FileMode::Read)), "new");
    EXPECT_FALSE(SystemFiles().Replace(folder.PathOf(u"none"), folder.PathOf(u"old")));
    EXPECT_TRUE(SystemFiles().Exists(folder.PathOf(u"old")));
    EXPECT_TRUE(SystemFiles().Remove(folder.PathOf(u"old")));
    EXPECT_FALSE(SystemFiles().Exists(folder.PathOf(u"old")));
    EXPECT_FALSE(SystemFiles().Remove(folder.PathOf(u"old")));
}

TEST(File, AFolderListsItsFilesAndFolders) {
    const TemporaryFolder folder;
    folder.WriteText(u"Länge.cnv", "x");
    auto entries = SystemFiles().List(folder.Path());
    ASSERT_TRUE(entries.has_value());
    ASSERT_EQ(entries->size(), 1U);
    EXPECT_EQ(entries->front().name, u"Länge.cnv");
    EXPECT_FALSE(entries->front().isFolder);

    const CVelmStringView inside = CVelmStringView(folder.Path()).substr(0, folder.Path().size() - 1);
    const CVelmString parent(inside.substr(0, inside.rfind(FolderSeparator)));
    entries = SystemFiles().List(parent);
    ASSERT_TRUE(entries.has_value());
    const auto self = std::find_if(entries->begin(), entries->end(), [&](const CVelmFolderEntry& entry) {
        return entry.name == inside.substr(parent.size() + 1);
    });
    ASSERT_NE(self, entries->end());
    EXPECT_TRUE(self->isFolder);
    EXPECT_FALSE(SystemFiles().List(folder.PathOf(u"none")).has_value());
}

TEST(File, TheProgramFolderHoldsThisProgram) {
    ASSERT_FALSE(ProgramFolder().empty());
    EXPECT_EQ(ProgramFolder().back(), FolderSeparator);
    const auto entries = SystemFiles().List(ProgramFolder());
    ASSERT_TRUE(entries.has_value());
    EXPECT_TRUE(std::any_of(entries->begin(), entries->end(), [](const CVelmFolderEntry& entry) {
        return StartsWithNoCase(entry.name, u"platform_tests");
    }));
    EXPECT_EQ(WithSeparator(u""), CVelmString(1, FolderSeparator));
    EXPECT_EQ(WithSeparator(ProgramFolder()), ProgramFolder());
}

}  // namespace

}  // namespace velm
