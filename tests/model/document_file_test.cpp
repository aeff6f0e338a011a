#include "model/document_file.h"

#include <gtest/gtest.h>

#include "support/file_bytes.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"
#include "support/temporary_folder.h"

namespace velm::test {
namespace {

constexpr auto FOLDER = u"data";

CVelmString Path(CVelmStringView name) {
    return WithSeparator(FOLDER) + CVelmString(name);
}

class DocumentFile : public testing::Test {
protected:
    /// A file of which one conversion cannot be read.
    static Bytes FileWithDroppedRecord() {
        return FileBytes().Header(u"", u"", u"").Int(1).Unit(u"m").Int(1).Linear(0, 5, 1.0).Sized();
    }

    static Bytes EmptyFile() { return FileBytes().Header(u"old", u"old", u"old").Int(0).Int(0).Sized(); }

    std::unique_ptr<CVelmConversionDoc> Loaded(CVelmStringView name) {
        auto document = std::make_unique<CVelmConversionDoc>(services.Services());
        EXPECT_TRUE(document->Load(FOLDER, true, CVelmString(name)));
        return document;
    }

    /// A document of `count` units, edited, whose file in the folder has other content.
    std::unique_ptr<CVelmConversionDoc> Edited(int count) {
        files.Add(Path(u"f.cnv"), EmptyFile());
        auto document = Loaded(u"f");
        for (int i = 0; i < count; ++i) {
            document->AddItem(CreateItem(ITEM_VALUE))->name = u"a unit with a name of some length";
        }
        document->Touch();
        return document;
    }

    MemoryFiles files;
    TestServices services{files};
};

TEST_F(DocumentFile, AnyFailureLeavesTheOldFileWholeAndNothingElse) {
    constexpr int UNITS = 1000;
    ASSERT_TRUE(Edited(UNITS)->Save(FOLDER));
    const int writes = files.writes;
    const auto size = files.Content(Path(u"f.cnv")).size();
    ASSERT_GE(writes, 1);
    ASSERT_GE(files.flushes, 1) << "the new file must reach the disk before it takes the old one's place";
    ASSERT_EQ(files.replaces, 1);

    const auto expectOldFile = [&] {
        const auto document = Edited(UNITS);
        EXPECT_FALSE(document->Save(FOLDER));
        EXPECT_TRUE(document->modified);
        EXPECT_EQ(document->ItemCount(), std::size_t{UNITS});
        EXPECT_EQ(files.Content(Path(u"f.cnv")), EmptyFile());
        EXPECT_EQ(files.Names(), "f.cnv ");
    };
    for (int number = 1; number <= writes; ++number) {
        SCOPED_TRACE("write " + std::to_string(number));
        files.failingWrite = files.writes + number;
        expectOldFile();
    }
    files.failingFlush = files.flushes + 1;
    expectOldFile();
    files.failingReplace = files.replaces + 1;
    expectOldFile();
    for (std::uint64_t free = 0; free < size; free += size / 7) {
        SCOPED_TRACE("disk full after " + std::to_string(free));
        files.freeBytes = free;
        expectOldFile();
    }
    files.freeBytes = size;
    EXPECT_TRUE(Edited(UNITS)->Save(FOLDER));
}

TEST_F(DocumentFile, UnloadWritesOnlyWhatTheFileDoesNotHoldAlready) {
    ASSERT_TRUE(Edited(2)->Save(FOLDER));
    for (const int replaces : {2, 2}) {
        const auto document = Loaded(u"f");
        document->items[0]->name = u"Ell";
        EXPECT_TRUE(document->Unload(FOLDER));
        EXPECT_EQ(files.replaces, replaces);
    }
    const auto open = Loaded(u"f");
    const auto elsewhere = Loaded(u"f");
    elsewhere->Touch(u"newer");
    EXPECT_TRUE(elsewhere->Save(FOLDER));
    open->items[0]->format.displayFormat = FMT_HEX;
    EXPECT_TRUE(open->SaveChanges(FOLDER));
    EXPECT_EQ(Loaded(u"f")->updatedText, u"newer") << "what another program wrote stays when nothing was edited";
    EXPECT_TRUE(open->Unload(FOLDER));
    EXPECT_EQ(Loaded(u"f")->updatedText, u"newer");
    EXPECT_EQ(Loaded(u"f")->items[0]->format.displayFormat, FMT_DECIMAL);

    EXPECT_FALSE(open->SaveChanges(FOLDER)) << "its items are in the file only";
    ASSERT_TRUE(open->EnsureLoaded(FOLDER));
    open->items[0]->format.displayFormat = FMT_HEX;
    EXPECT_TRUE(open->SaveChanges(FOLDER));
    EXPECT_EQ(Loaded(u"f")->items[0]->format.displayFormat, FMT_HEX);
}

TEST_F(DocumentFile, ATextThatCouldNotBeReadAgainIsNotWritten) {
    const auto document = Edited(1);
    document->title = CVelmString(65536, u'x');
    EXPECT_FALSE(document->Save(FOLDER));
    EXPECT_EQ(files.Content(Path(u"f.cnv")), EmptyFile());
    document->title.pop_back();
    files.AddText(Path(u"f.cnv.tmp"), "mine");
    EXPECT_TRUE(document->Save(FOLDER));
    EXPECT_EQ(files.Names(), "f.cnv f.cnv.tmp ") << "a temporary name in use is left alone";
    EXPECT_EQ(files.Content(Path(u"f.cnv.tmp")).size(), 4U);
}

TEST_F(DocumentFile, WhatWasReadInPartIsKeptBesideTheFirstTimeOnly) {
    // The other one has bytes behind its last record.
    for (const Bytes& bytes :
         {FileWithDroppedRecord(), FileBytes().Header(u"", u"", u"").Int(0).Int(0).Int(7).Sized()}) {
        files.Add(Path(u"f.cnv"), bytes);
        CVelmConversionDoc document(services.Services());
        ASSERT_TRUE(document.Load(FOLDER, false, u"f"));
        EXPECT_EQ(files.Names(), "f.cnv ") << "reading alone keeps nothing";
        ASSERT_TRUE(document.EnsureLoaded(FOLDER));
        files.failingWrite = files.writes + 1;
        EXPECT_FALSE(document.Save(FOLDER)) << "without room for the copy the original stays";
        EXPECT_EQ(files.Names(), "f.cnv ");
        EXPECT_EQ(files.Content(Path(u"f.cnv")), bytes);
        for (int save = 0; save < 2; ++save) {
            ASSERT_TRUE(document.Save(FOLDER));
            EXPECT_EQ(files.Content(Path(u"f.cnv.bak")), bytes) << "the copy is the original's, not the last save's";
            document.Touch();
        }
        files.Remove(Path(u"f.cnv.bak"));
    }
    files.Add(Path(u"f.cnv"), FileWithDroppedRecord());
    files.AddText(Path(u"f.cnv.bak"), "older");
    ASSERT_TRUE(Loaded(u"f")->Save(FOLDER));
    EXPECT_EQ(files.Content(Path(u"f.cnv.bak")).size(), 5U) << "a copy that is there is not overwritten";
    EXPECT_NE(files.Content(Path(u"f.cnv")), FileWithDroppedRecord());
}

TEST_F(DocumentFile, AnOlderFileThatCannotBeRewrittenIsStillRead) {
    const Bytes older = FileBytes().Int(0xC0215192).Text(u"Old").Int(0).Int(0).Int(0).Get();
    files.Add(Path(u"f.cnv"), older);
    files.failingOpenForWriting = true;
    const auto document = Loaded(u"f");
    EXPECT_EQ(document->title, u"Old");
    EXPECT_EQ(files.Content(Path(u"f.cnv")), older);
    files.failingOpenForWriting = false;
    EXPECT_TRUE(document->Save(FOLDER));
    EXPECT_EQ(files.Names(), "f.cnv f.cnv.bak ");
}

TEST_F(DocumentFile, UnloadSavesEditsAndKeepsTheCount) {
    const auto made = MakeConversionDoc(services.Services(), u"Length", {u"m", u"ft", u"in", u"mi"});
    CVelmConversionDoc& document = *made;
    EXPECT_TRUE(document.Unload(FOLDER));
    EXPECT_FALSE(document.loaded);
    EXPECT_EQ(document.ItemCount(), 0U);
    EXPECT_EQ(document.storedItemCount, 4);
    EXPECT_FALSE(document.Save(FOLDER)) << "an unloaded document has nothing to put in the place of its file";
    EXPECT_TRUE(document.Unload(FOLDER));
    EXPECT_TRUE(document.EnsureLoaded(FOLDER));
    EXPECT_EQ(document.ItemCount(), 4U);
    document.RemoveItems(0, 0);
    EXPECT_FALSE(document.modified);
    document.RemoveItems(0, 1);
    EXPECT_TRUE(document.modified);
    EXPECT_TRUE(document.EnsureLoaded(FOLDER));
    EXPECT_EQ(document.ItemCount(), 3U) << "what is loaded is not loaded again";
    EXPECT_TRUE(document.Unload({}));
    EXPECT_TRUE(document.EnsureLoaded(FOLDER));
    EXPECT_EQ(document.ItemCount(), 4U) << "without a folder nothing is saved";

    files.failingOpenForWriting = true;
    EXPECT_TRUE(document.Unload(FOLDER)) << "nothing was edited";
    ASSERT_TRUE(document.EnsureLoaded(FOLDER));
    document.items[0]->name = u"Meter";
    document.Touch();
    EXPECT_FALSE(document.Unload(FOLDER));
    EXPECT_TRUE(document.loaded);
    EXPECT_EQ(document.items[0]->name, u"Meter");
}

TEST(DocumentFileOnDisk, AFileIsFoundAndReplacedWhateverTheLetterCaseOfItsName) {
    for (const CVelmString name : {u"Area.CNV", u"vOLUME.cNv", u"Power.cnv"}) {
        const TemporaryFolder folder;
        folder.Write(name, FileBytes().Header(u"old", u"old", u"old").Int(0).Int(0).Sized());
        CVelmConversionDoc document(SystemServices());
        ASSERT_TRUE(document.Load(folder.Path(), true, ToLowerAscii(name.substr(0, name.size() - 4))));
        document.title = u"Changed";
        document.Touch(u"now");
        EXPECT_TRUE(document.Unload(folder.Path()));
        EXPECT_EQ(folder.Names(), std::vector{name}) << "not a second file beside it";
        EXPECT_EQ(folder.Read(name), FileBytes().Header(u"now", u"Changed", u"old").Int(0).Int(0).Sized());
        document.fileName = u"Renamed";
        EXPECT_EQ(document.PathIn(folder.Path()), folder.PathOf(u"Renamed.cnv"));
    }
}

}  // namespace
}  // namespace velm::test
