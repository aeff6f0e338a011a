#include <gtest/gtest.h>

#include "model/document.h"
#include "support/faulty_files.h"
#include "support/file_bytes.h"
#include "support/temporary_folder.h"
#include "support/test_services.h"

namespace velm {
namespace {

using test::Bytes;
using test::FaultyFiles;
using test::FileBytes;
using test::TemporaryFolder;
using test::TestServices;

using Names = std::vector<CVelmString>;

class Save : public testing::Test {
protected:
    /// A file of which one conversion cannot be read.
    static Bytes FileWithDroppedRecord() {
        return FileBytes().Header(u"", u"", u"").Int(1).Unit(u"m").Int(1).Linear(0, 5, 1.0).Sized();
    }

    static Bytes OlderFile() { return FileBytes().Int(0xC0215192).Text(u"Old").Int(0).Int(0).Int(0).Get(); }

    /// A document of `count` units, edited, whose file in the folder has other content.
    std::unique_ptr<CVelmConversionDoc> Edited(int count) {
        folder.Write(u"Length.cnv", FileBytes().Header(u"old", u"old", u"old").Int(0).Int(0).Sized());
        auto document = std::make_unique<CVelmConversionDoc>(CVelmServices{faulty, services.clock, services.locale});
        EXPECT_TRUE(document->Load(folder.Path(), true, u"Length"));
        for (int i = 0; i < count; ++i) {
            document->AddItem(CreateItem(ITEM_VALUE))->name = u"a unit with a name of some length";
        }
        document->Touch();
        return document;
    }

    TemporaryFolder folder;
    TestServices services;
    FaultyFiles faulty{SystemFiles()};
};

TEST_F(Save, AnyFailureLeavesTheOldFileWholeAndNothingElse) {
    constexpr int UNITS = 1000;
    {
        const auto document = Edited(UNITS);
        ASSERT_TRUE(document->Save(folder.Path()));
    }
    const int writes = faulty.writes;
    const auto size = folder.Read(u"Length.cnv").size();
    ASSERT_GT(writes, 5);
    ASSERT_GE(faulty.flushes, 1) << "the new file must reach the disk before it takes the old one's place";
    ASSERT_EQ(faulty.replaces, 1);

    const auto expectOldFile = [&](const std::string& fault) {
        const auto document = Edited(UNITS);
        const Bytes old = folder.Read(u"Length.cnv");
        EXPECT_FALSE(document->Save(folder.Path())) << fault;
        EXPECT_TRUE(document->IsModified()) << fault;
        EXPECT_EQ(document->ItemCount(), std::size_t{UNITS}) << fault;
        EXPECT_EQ(folder.Read(u"Length.cnv"), old) << fault;
        EXPECT_EQ(folder.Names(), Names{u"Length.cnv"}) << fault;
        EXPECT_FALSE(document->Unload(folder.Path()) && document->items.empty() && folder.Read(u"Length.cnv") == old)
            << fault << ": edits are dropped that were not saved";
    };
    for (int n = 1; n <= writes; ++n) {
        faulty.writes = 0;
        faulty.failingWrite = n;
        expectOldFile("write " + std::to_string(n));
    }
    faulty.failingWrite = 0;
    faulty.flushes = 0;
    faulty.failingFlush = 1;
    expectOldFile("flush");
    faulty.replaces = 0;
    faulty.failingReplace = 1;
    expectOldFile("replace");
    for (std::uint64_t free = 0; free < size; free += size / 7) {
        faulty.freeBytes = free;
        expectOldFile("disk full after " + std::to_string(free));
    }
    faulty.freeBytes = size + 4;  // the size word is written twice
    EXPECT_TRUE(Edited(UNITS)->Save(folder.Path()));
}

TEST_F(Save, ANewDocumentNeedsNoOldFile) {
    CVelmCalculationDoc document(services.Services());
    document.fileName = u"New";
    EXPECT_FALSE(document.Save(folder.PathOf(u"missing")));
    document.Touch();
    EXPECT_TRUE(document.Save(folder.Path()));
    EXPECT_FALSE(document.IsModified());
    EXPECT_EQ(folder.Names(), Names{u"New.cal"});
}

TEST_F(Save, ATextThatCouldNotBeReadAgainIsNotWritten) {
    const auto document = Edited(1);
    const Bytes old = folder.Read(u"Length.cnv");
    document->title = CVelmString(65536, u'x');
    EXPECT_FALSE(document->Save(folder.Path()));
    EXPECT_EQ(folder.Read(u"Length.cnv"), old);
    document->title.pop_back();
    EXPECT_TRUE(document->Save(folder.Path()));
}

TEST_F(Save, ATemporaryNameInUseIsLeftAlone) {
    const auto document = Edited(1);
    folder.WriteText(u"Length.cnv.tmp", "mine");
    EXPECT_TRUE(document->Save(folder.Path()));
    EXPECT_EQ(folder.Names(), (Names{u"Length.cnv", u"Length.cnv.tmp"}));
    EXPECT_EQ(folder.Read(u"Length.cnv.tmp").size(), 4U);
}

TEST_F(Save, WhatWasReadInPartIsKeptBesideTheFirstTimeOnly) {
    folder.Write(u"f.cnv", FileWithDroppedRecord());
    CVelmConversionDoc document(services.Services());
    ASSERT_TRUE(document.Load(folder.Path(), false, u"f"));
    EXPECT_EQ(folder.Names(), Names{u"f.cnv"}) << "reading alone keeps nothing";
    ASSERT_TRUE(document.EnsureLoaded(folder.Path()));
    EXPECT_EQ(document.DroppedRecords(), 1);
    ASSERT_TRUE(document.Save(folder.Path()));
    EXPECT_EQ(folder.Names(), (Names{u"f.cnv", u"f.cnv.bak"}));
    EXPECT_EQ(folder.Read(u"f.cnv.bak"), FileWithDroppedRecord());
    document.Touch();
    ASSERT_TRUE(document.Save(folder.Path()));
    EXPECT_EQ(folder.Read(u"f.cnv.bak"), FileWithDroppedRecord()) << "the copy is the original's, not the last save's";
}

TEST_F(Save, BytesBehindTheLastRecordAreKeptBesideToo) {
    const Bytes bytes = FileBytes().Header(u"", u"", u"").Int(0).Int(0).Int(7).Sized();
    folder.Write(u"f.cnv", bytes);
    CVelmConversionDoc document(services.Services());
    ASSERT_TRUE(document.Load(folder.Path(), true, u"f"));
    ASSERT_TRUE(document.Unload(folder.Path()));
    EXPECT_EQ(folder.Read(u"f.cnv.bak"), bytes);
}

TEST_F(Save, ACopyThatIsThereIsNotOverwritten) {
    folder.Write(u"f.cnv", FileWithDroppedRecord());
    folder.WriteText(u"f.cnv.bak", "older");
    CVelmConversionDoc document(services.Services());
    ASSERT_TRUE(document.Load(folder.Path(), true, u"f"));
    ASSERT_TRUE(document.Save(folder.Path()));
    EXPECT_EQ(folder.Read(u"f.cnv.bak").size(), 5U);
    EXPECT_NE(folder.Read(u"f.cnv"), FileWithDroppedRecord());
}

TEST_F(Save, WithoutRoomForTheCopyTheOriginalStays) {
    folder.Write(u"f.cnv", FileWithDroppedRecord());
    CVelmConversionDoc document({faulty, services.clock, services.locale});
    ASSERT_TRUE(document.Load(folder.Path(), true, u"f"));
    faulty.failingWrite = 1;
    EXPECT_FALSE(document.Save(folder.Path()));
    EXPECT_EQ(folder.Names(), Names{u"f.cnv"});
    EXPECT_EQ(folder.Read(u"f.cnv"), FileWithDroppedRecord());
}

TEST_F(Save, AnOlderFileThatCannotBeRewrittenIsStillRead) {
    folder.Write(u"f.cal", OlderFile());
    faulty.failingOpenForWriting = true;
    CVelmCalculationDoc document({faulty, services.clock, services.locale});
    EXPECT_TRUE(document.Load(folder.Path(), true, u"f"));
    EXPECT_EQ(document.title, u"Old");
    EXPECT_EQ(folder.Read(u"f.cal"), OlderFile());
    faulty.failingOpenForWriting = false;
    EXPECT_TRUE(document.Save(folder.Path()));
    EXPECT_EQ(folder.Names(), (Names{u"f.cal", u"f.cal.bak"}));
}

TEST_F(Save, AFileIsFoundAndReplacedWhateverTheLetterCaseOfItsName) {
    const Bytes empty = FileBytes().Header(u"", u"Found", u"").Int(0).Int(0).Sized();
    for (const CVelmString name : {u"Area.CNV", u"vOLUME.cNv", u"Power.cnv"}) {
        folder.Write(name, empty);
        CVelmConversionDoc document(services.Services());
        CVelmString lower = ToLowerAscii(name);
        ASSERT_TRUE(document.Load(folder.Path(), false, lower.substr(0, lower.size() - 4)));
        EXPECT_EQ(document.title, u"Found");
        ASSERT_TRUE(document.EnsureLoaded(folder.Path()));
        document.title = u"Changed";
        document.Touch();
        EXPECT_TRUE(document.Unload(folder.Path()));
        EXPECT_EQ(folder.Names(), Names{name}) << "not a second file beside it";
        document.fileName = u"Renamed";
        EXPECT_EQ(document.PathIn(folder.Path()), folder.PathOf(u"Renamed.cnv"));
        ASSERT_TRUE(SystemFiles().Remove(folder.PathOf(name)));
    }
}

}  // namespace
}  // namespace velm
