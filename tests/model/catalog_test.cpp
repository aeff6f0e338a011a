#include "model/catalog.h"

#include <gtest/gtest.h>

#include <string>

#include "support/faulty_files.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"
#include "support/temporary_folder.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

class CatalogTest : public testing::Test {
protected:
    CatalogTest() { catalog.SetFolder(folder.Path()); }

    void Store(const CVelmString& name, const CVelmString& category = {}) {
        const auto document = MakeConversionDoc(services.Services(), name, {u"a", u"b"});
        document->category = category;
        ASSERT_TRUE(document->Save(folder.Path()));
    }

    void StoreCalculation(const CVelmString& name) {
        CVelmCalculationDoc document(services.Services());
        document.fileName = name;
        ASSERT_TRUE(document.Save(folder.Path()));
    }

    /// The catalogue's file names in order, an asterisk behind those that are loaded.
    std::string Names() const {
        std::string names;
        for (const auto& document : catalog.documents) {
            names += ToUtf8(document->FileNameWithExtension()) + (document->loaded ? "* " : " ");
        }
        return names;
    }

    TemporaryFolder folder;
    FaultyFiles files{SystemFiles()};
    TestServices services{files};
    CVelmCatalog catalog{services.Services()};
};

TEST_F(CatalogTest, TakesOnlyReadableDataFiles) {
    Store(u"Length");
    StoreCalculation(u"Tip");
    folder.WriteText(u".cnv", "no name");
    folder.WriteText(u"notes.txt", "no data file");
    folder.WriteText(u"broken.cnv", "no header");
    EXPECT_EQ(catalog.AddFile(u"Length.cnv"), 0);
    EXPECT_EQ(catalog.AddFile(u"Tip.cal"), 1);
    EXPECT_EQ(catalog.AddFile(u"LENGTH.cnv"), 0);
    for (const char16_t* name : {u".cnv", u"notes.txt", u"broken.cnv", u"missing.cnv", u"Length.cal", u""}) {
        EXPECT_EQ(catalog.AddFile(name), -1) << ToUtf8(name);
    }
    EXPECT_EQ(Names(), "Length.cnv Tip.cal ");
    EXPECT_EQ(catalog.documents[0]->GetKind(), KIND_CONVERSION);
    EXPECT_EQ(catalog.documents[1]->GetKind(), KIND_CALCULATION);

    EXPECT_EQ(catalog.FindDocument(u"tip.CAL"), 1);
    EXPECT_EQ(catalog.FindDocument(u"Tip"), -1);
    EXPECT_EQ(catalog.GetDocument(u"tip.cal", false), catalog.documents[1].get());
    EXPECT_EQ(catalog.GetDocument(u"none.cal", true), nullptr);
}

TEST_F(CatalogTest, RecentFilesComeFirstAndKeepTheirPlace) {
    for (const char16_t* name : {u"a", u"b", u"c", u"d"}) {
        Store(name);
    }
    folder.WriteText(u"broken.cnv", "no header");
    catalog.AddFiles(CVelmStringView(u"c.cnv\0gone.cnv\0B.cnv\0\0a.cnv\0", 28));
    ASSERT_EQ(catalog.documents.size(), 2U) << "the first empty name ends the list";
    catalog.ScanFolder();
    ASSERT_EQ(catalog.documents.size(), 4U);
    EXPECT_EQ(Names().substr(0, 6), "c.cnv ");
    EXPECT_EQ(catalog.FindDocument(u"b.cnv"), 1);
    const std::string first = Names();
    catalog.ScanFolder();
    EXPECT_EQ(Names(), first);

    // A list that ends with its field and not with an empty name.
    CVelmCatalog other(services.Services());
    other.SetFolder(folder.Path());
    other.AddFiles(u"a.cnv");
    EXPECT_EQ(other.documents.size(), 1U);
}

TEST_F(CatalogTest, NamesThatDifferInLetterCaseAreOneDocument) {
    MemoryFiles memory;
    TestServices caseSensitive(memory);
    for (const char16_t* name : {u"Length", u"length", u"W\u00C4RME", u"w\u00E4rme"}) {
        ASSERT_TRUE(MakeConversionDoc(caseSensitive.Services(), name)->Save(WithSeparator(u"data")));
    }
    CVelmCatalog both(caseSensitive.Services());
    both.SetFolder(u"data");
    EXPECT_EQ(both.AddFile(u"LENGTH.CNV"), 0);
    both.ScanFolder();
    EXPECT_EQ(both.documents.size(), 2U);
    EXPECT_EQ(both.FindDocument(u"length.cnv"), 0);
    EXPECT_EQ(both.FindDocument(u"W\u00E4rme.cnv"), 1);
}

TEST_F(CatalogTest, ActivatingMovesTheDocumentToTheFrontAndWritesTheOneBefore) {
    for (const char16_t* name : {u"a", u"b", u"c"}) {
        Store(name);
        catalog.AddFile(CVelmString(name) + u".cnv");
    }
    EXPECT_EQ(catalog.Activate(0), catalog.documents[0].get());
    EXPECT_EQ(Names(), "a.cnv* b.cnv c.cnv ");
    catalog.documents[0]->items[0]->name = u"edited";
    catalog.documents[0]->Touch();

    const CVelmDocument* opened = catalog.GetDocument(u"C.cnv", true);
    EXPECT_EQ(opened, catalog.documents[0].get());
    EXPECT_EQ(Names(), "c.cnv* a.cnv b.cnv ");
    catalog.Activate(1);
    EXPECT_EQ(Names(), "a.cnv* c.cnv b.cnv ");
    EXPECT_EQ(ToUtf8(catalog.documents[0]->items[0]->name), "edited");

    EXPECT_EQ(catalog.Activate(3), nullptr);
    EXPECT_EQ(catalog.Activate(-1), nullptr);
    EXPECT_EQ(Names(), "a.cnv* c.cnv b.cnv ");
    EXPECT_EQ(CVelmCatalog(services.Services()).Activate(0), nullptr);
}

TEST_F(CatalogTest, TheOpenDocumentIsNeitherWrittenNorReadAgain) {
    Store(u"a");
    catalog.AddFile(u"a.cnv");
    catalog.Activate(0);
    catalog.documents[0]->items[0]->name = u"typed";
    files.writes = files.reads = 0;
    catalog.Activate(0);
    EXPECT_EQ(files.writes, 0);
    EXPECT_EQ(files.reads, 0);
    EXPECT_EQ(ToUtf8(catalog.documents[0]->items[0]->name), "typed");
}

TEST_F(CatalogTest, EditsThatCannotBeWrittenStayOpen) {
    Store(u"a");
    Store(u"b");
    catalog.AddFiles(CVelmStringView(u"a.cnv\0b.cnv\0", 12));
    catalog.Activate(0);
    files.failingOpenForWriting = true;
    catalog.Activate(1);
    EXPECT_EQ(Names(), "b.cnv* a.cnv ") << "nothing was edited, so nothing is lost";

    catalog.documents[0]->items[0]->name = u"edited";
    catalog.documents[0]->Touch();
    EXPECT_EQ(catalog.Activate(1), catalog.documents[0].get());
    EXPECT_EQ(Names(), "b.cnv* a.cnv ");
    EXPECT_EQ(ToUtf8(catalog.documents[0]->items[0]->name), "edited");
}

TEST_F(CatalogTest, MergesUpdatesOfConversionDocumentsThatBecomeTheOpenOne) {
    Store(u"a");
    Store(u"b");
    StoreCalculation(u"c");
    std::string merged;
    catalog.SetPendingMerge([&](CVelmConversionDoc& document, const CVelmCatalog& owner) {
        EXPECT_TRUE(document.loaded);
        EXPECT_EQ(&owner, &catalog);
        merged += ToUtf8(document.fileName);
        return true;
    });
    catalog.AddFiles(CVelmStringView(u"a.cnv\0b.cnv\0c.cal\0", 18));
    catalog.Activate(0);
    EXPECT_EQ(merged, "");
    catalog.Activate(1);
    EXPECT_EQ(merged, "b");
    catalog.Activate(2);
    EXPECT_EQ(merged, "b") << "a calculation has no rates";
    catalog.Activate(2);
    EXPECT_EQ(merged, "ba");

    folder.WriteText(u"b.cnv", "damaged meanwhile");
    catalog.Activate(catalog.FindDocument(u"b.cnv"));
    EXPECT_EQ(merged, "ba") << "a document that did not load is left alone";
}

TEST_F(CatalogTest, CountsUnitsAndListsCategories) {
    Store(u"a", u"Science");
    Store(u"b", u"science");
    Store(u"c");
    Store(u"d", u"Science");
    catalog.AddFiles(CVelmStringView(u"a.cnv\0b.cnv\0c.cnv\0d.cnv\0", 24));
    EXPECT_EQ(catalog.Categories(), (std::vector<CVelmString>{u"Science", u"science"}));
    EXPECT_EQ(ToUtf8(CVelmCatalog::UnitCountText(*catalog.documents[0])), "2 units");
    catalog.Activate(0)->AddItem(CreateItem(ITEM_VALUE));
    EXPECT_EQ(ToUtf8(CVelmCatalog::UnitCountText(*catalog.documents[0])), "3 units");
}

TEST(CatalogScan, OpensEachFileOnceForItsHeaderAlone) {
    MemoryFiles memory;
    TestServices services(memory);
    constexpr int COUNT = 500;
    for (int number = 0; number < COUNT; ++number) {
        const CVelmString name = FromUtf8("File " + std::to_string(number));
        ASSERT_TRUE(MakeConversionDoc(services.Services(), name, {u"a"})->Save(WithSeparator(u"data")));
    }
    CVelmCatalog catalog(services.Services());
    catalog.SetFolder(u"data");
    memory.opens = 0;
    catalog.ScanFolder();
    EXPECT_EQ(catalog.documents.size(), static_cast<std::size_t>(COUNT));
    EXPECT_EQ(memory.opens, COUNT);
}

}  // namespace
}  // namespace velm::test
