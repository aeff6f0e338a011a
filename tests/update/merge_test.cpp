#include "update/merge.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

class MergeTest : public testing::Test {
protected:
    /// A currency file, three units joined in a row, is stored and the catalog's open document.
    MergeTest() {
        catalog.SetFolder(u"data");
        const auto stored = MakeConversionDoc(services.Services(), u"Currency", {u"USD", u"EUR", u"GBP", u"", u"JPY"});
        Join(*stored, 0, 1, 0.5, 3.0);
        JoinByFormulas(*stored, 1, 2, u"x+1", u"x-1");
        EXPECT_TRUE(stored->Save(catalog.Folder()));
        before = files.Content(catalog.Folder() + u"Currency.cnv");
    }

    CVelmConversionDoc& Open() {
        catalog.documents.clear();
        catalog.AddFile(u"Currency.cnv");
        return static_cast<CVelmConversionDoc&>(*catalog.Activate(0));
    }

    bool MergeText(CVelmConversionDoc& document, std::string_view text) {
        files.AddText(catalog.Folder() + document.fileName + u".upd", text);
        return Merge(document, catalog, context);
    }

    bool IsPending() { return files.Exists(catalog.Folder() + u"Currency.upd"); }
    bool IsUnchanged() const { return files.Content(catalog.Folder() + u"Currency.cnv") == before; }

    static constexpr const char* BEFORE = "USD*0.5+3=EUR EUR{x+1|x-1}GBP ";

    MemoryFiles files;
    TestServices services{files};
    FormulaContext context{services.clock};
    CVelmCatalog catalog{services.Services()};
    Bytes before;
};

TEST_F(MergeTest, AStampIsNoLongerThanAFileCanHold) {
    MergeText(Open(), "VLMUPD\n--Updated:" + std::string(100'000, 'x'));
    EXPECT_EQ(Open().updatedText.size(), 65535U);
}

TEST_F(MergeTest, LeavesEverythingAloneWithoutAWholeUpdateFile) {
    CVelmConversionDoc& document = Open();
    EXPECT_FALSE(Merge(document, catalog, context));
    std::string tooLong = "VLMUPD\nUSD\tEUR\t2\n";
    while (tooLong.size() < 20'000) {
        tooLong += "--filling\n";
    }
    for (const std::string& text :
         {std::string(), std::string("VLMUP"), std::string("vlmupd\nUSD\tEUR\t2\n"),
          std::string("VLMLST\nUSD\tEUR\t2\n"), std::string("\nVLMUPD\nUSD\tEUR\t2\n"), tooLong}) {
        files.failingRead = text == tooLong ? files.reads + 2 : 0;
        EXPECT_FALSE(MergeText(document, text)) << text;
        EXPECT_TRUE(IsPending()) << text;
    }
    EXPECT_EQ(Conversions(document), BEFORE);
    EXPECT_FALSE(document.modified);
    EXPECT_TRUE(IsUnchanged());

    before.push_back(0);
    files.Add(catalog.Folder() + u"Currency.cnv", before);
    CVelmConversionDoc damaged(services.Services());
    damaged.fileName = u"Currency";
    damaged.loaded = false;
    EXPECT_FALSE(MergeText(damaged, "VLMUPD\nUSD\tEUR\t2\n"));
    EXPECT_TRUE(IsUnchanged()) << "a document that does not load is not written over";
    EXPECT_TRUE(IsPending());
}

TEST_F(MergeTest, TheUpdateFileStaysUntilTheDocumentIsSaved) {
    CVelmConversionDoc& document = Open();
    files.failingOpenForWriting = true;
    EXPECT_TRUE(MergeText(document, "VLMUPD\nUSD\tEUR\t2\n"));
    EXPECT_EQ(Conversions(document), "USD*2=EUR EUR{x+1|x-1}GBP ");
    EXPECT_TRUE(document.modified);
    EXPECT_TRUE(IsPending());
    EXPECT_TRUE(IsUnchanged());

    files.failingOpenForWriting = false;
    EXPECT_TRUE(Merge(Open(), catalog, context)) << "merged again when it is opened the next time";
    EXPECT_EQ(Conversions(Open()), "USD*2=EUR EUR{x+1|x-1}GBP ");
    EXPECT_FALSE(IsPending());
}

TEST_F(MergeTest, AnUpdateOlderThanTheRatesThatItReplacesCanBeRemoved) {
    const auto olderThan = [this](std::string_view update) {
        CVelmConversionDoc& document = Open();
        files.AddText(catalog.Folder() + u"Currency.upd", update);
        const auto older = RemoveOlderUpdate(document, catalog.Folder(), services.Services(), context);
        return older ? ToUtf8(DayText(older->update) + u" " + DayText(older->held)) : "nothing";
    };
    EXPECT_TRUE(MergeText(Open(), "VLMUPD\n--Updated:2024-07-04\nUSD\tEUR\t2\n"));
    EXPECT_EQ(olderThan("VLMUPD\n--Updated: 2024-07-03\nEUR\tUSD\t3\nUSD\tGBP\t3\n"), "2024-07-03 2024-07-04");
    EXPECT_FALSE(IsPending());
    for (const char* const update :
         {"VLMUPD\n--Updated:2024-07-04\nUSD\tEUR\t3\n", "VLMUPD\n--Updated:2024-07-03\nUSD\tGBP\t3\n",
          "VLMUPD\n--Updated:once\nUSD\tEUR\t3\n", "VLMUPD\nUSD\tEUR\t3\n", "none"}) {
        EXPECT_EQ(olderThan(update), "nothing") << update;
        EXPECT_TRUE(IsPending()) << update;
    }
    EXPECT_EQ(Conversions(Open()), "USD*2=EUR EUR{x+1|x-1}GBP ");
}

}  // namespace
}  // namespace velm::test
