#include "model/catalog.h"

#include <gtest/gtest.h>

#include "model/calculation_document.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

class CatalogTest : public testing::Test {
protected:
    CatalogTest() { catalog.SetFolder(u"data"); }

    void Store(std::initializer_list<const char16_t*> names) {
        for (const char16_t* name : names) {
            const auto document = MakeConversionDoc(services.Services(), name, {u"a", u"b"});
            document->category = CVelmStringView(name).substr(1);
            ASSERT_TRUE(document->Save(catalog.Folder()));
        }
    }

    void StoreCalculation(const CVelmString& name) {
        CVelmCalculationDoc document(services.Services());
        document.fileName = name;
        ASSERT_TRUE(document.Save(catalog.Folder()));
    }

    void WriteNoDataFile(CVelmStringView name) { files.Add(catalog.Folder() + CVelmString(name), {'?'}); }

    /// Edits the open document's first item as a dialog does.
    void EditOpenOne() {
        catalog.documents[0]->items[0]->name = u"edited";
        catalog.documents[0]->Touch();
    }

    /// The catalog's file names in order, loaded ones marked with an asterisk.
    std::string Names() const {
        std::string names;
        for (const auto& document : catalog.documents) {
            names += ToUtf8(document->FileNameWithExtension()) + (document->loaded ? "* " : " ");
        }
        return names;
    }

    MemoryFiles files;
    TestServices services{files};
    CVelmCatalog catalog{services.Services()};
};

TEST_F(CatalogTest, TakesOnlyReadableDataFiles) {
    Store({u"Length", u"W\u00C4RME", u"Tength"});
    StoreCalculation(u"Tip");
    for (const char16_t* name : {u".cnv", u"notes.txt", u"broken.cnv"}) {
        WriteNoDataFile(name);
    }
    const std::pair<const char16_t*, int> names[] = {
        {u"Length.cnv", 0},     {u"Tip.cal", 1},     {u"LENGTH.cnv", 0}, {u"W\u00C4RME.cnv", 2},
        {u"w\u00E4rme.cnv", 2}, {u".cnv", -1},       {u"notes.txt", -1}, {u"broken.cnv", -1},
        {u"missing.cnv", -1},   {u"Length.cal", -1}, {u"", -1},          {u"Tength.cnv", 3}};
    for (const auto& [name, index] : names) {
        EXPECT_EQ(catalog.AddFile(name), index) << ToUtf8(name);
    }
    EXPECT_EQ(catalog.FindDocument(u"Tip"), -1);
    EXPECT_EQ(catalog.GetDocument(u"tip.cal", false), catalog.documents[1].get());
    EXPECT_EQ(catalog.GetDocument(u"none.cal", true), nullptr);
    catalog.Activate(0)->AddItem(CreateItem(ITEM_VALUE));
    EXPECT_EQ(ToUtf8(CVelmCatalog::UnitCountText(*catalog.documents[0])), "3 units");
}

TEST_F(CatalogTest, RecentFilesComeFirstAndTheFolderIsReadForItsHeadersAlone) {
    Store({u"a", u"b", u"c", u"d", u"A"});
    WriteNoDataFile(u"broken.cnv");
    catalog.AddFiles(CVelmStringView(u"c.cnv\0gone.cnv\0B.cnv\0b.cnv\0\0a.cnv\0", 34));
    EXPECT_EQ(Names(), "c.cnv B.cnv ") << "the first empty name ends the list";
    catalog.AddFiles(u"d.cnv");
    files.opens = 0;
    catalog.ScanFolder();
    EXPECT_EQ(Names(), "c.cnv B.cnv d.cnv A.cnv ") << "names that differ in letter case are one document";
    EXPECT_EQ(files.opens, 2) << "the new one and the broken one";
    catalog.ScanFolder();
    EXPECT_EQ(Names(), "c.cnv B.cnv d.cnv A.cnv ");
}

TEST_F(CatalogTest, ActivatingMovesTheDocumentToTheFrontAndWritesTheOneBefore) {
    EXPECT_EQ(catalog.Activate(0), nullptr);
    Store({u"a", u"b", u"c"});
    catalog.ScanFolder();
    EXPECT_EQ(catalog.Activate(0), catalog.documents[0].get());
    EXPECT_EQ(Names(), "a.cnv* b.cnv c.cnv ");
    EditOpenOne();
    files.writes = files.reads = 0;
    catalog.Activate(0);
    EXPECT_EQ(files.writes + files.reads, 0) << "the open one is neither written nor read again";
    const CVelmDocument* opened = catalog.GetDocument(u"C.cnv", true);
    EXPECT_EQ(opened, catalog.documents[0].get());
    EXPECT_EQ(Names(), "c.cnv* a.cnv b.cnv ");
    catalog.Activate(1);
    EXPECT_EQ(Names(), "a.cnv* c.cnv b.cnv ");
    EXPECT_EQ(catalog.documents[0]->items[0]->name, u"edited");
    EXPECT_EQ(catalog.Activate(3), nullptr);
    EXPECT_EQ(catalog.Activate(-1), nullptr);

    files.failingOpenForWriting = true;
    catalog.Activate(1);
    EXPECT_EQ(Names(), "c.cnv* a.cnv b.cnv ") << "nothing was edited, so nothing is lost";
    EditOpenOne();
    EXPECT_EQ(catalog.Activate(1), catalog.documents[0].get());
    EXPECT_EQ(Names(), "c.cnv* a.cnv b.cnv ") << "edits that cannot be written stay open";
    EXPECT_EQ(catalog.documents[0]->items[0]->name, u"edited");
}

TEST_F(CatalogTest, MergesUpdatesOfConversionDocumentsThatBecomeTheOpenOne) {
    Store({u"a", u"b"});
    StoreCalculation(u"c");
    std::string merged;
    catalog.SetPendingMerge([&](CVelmConversionDoc& document, const CVelmCatalog& owner) {
        EXPECT_TRUE(document.loaded);
        EXPECT_EQ(&owner, &catalog);
        merged += ToUtf8(document.fileName);
        return true;
    });
    catalog.AddFiles(CVelmStringView(u"a.cnv\0b.cnv\0c.cal\0", 18));
    const std::pair<int, const char*> steps[] = {{0, ""}, {1, "b"}, {2, "b"}, {2, "ba"}};
    for (const auto& [index, mergedThen] : steps) {
        catalog.Activate(index);
        EXPECT_EQ(merged, mergedThen) << Names();
    }
    WriteNoDataFile(u"b.cnv");
    catalog.Activate(catalog.FindDocument(u"b.cnv"));
    EXPECT_EQ(merged, "ba") << "a document that did not load is left alone";
}

}  // namespace
}  // namespace velm::test
