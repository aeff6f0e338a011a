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

TEST_F(MergeTest, SetsReversesReplacesAndAddsConversions) {
    const struct {
        const char* update;
        const char* conversions;
    } cases[] = {
        {"VLMUPD 1\r\n--File Name:Currency\r\neur\tusd\t1/0.8\r\nEUR\tGBP\t0.75\r\nUSD\tJPY\t150",
         "EUR*1.25=USD EUR*0.75=GBP USD*150=JPY "},
        // The first line says nothing, and the last rate of a pair holds.
        {"VLMUPDUSD\tJPY\t1\rUSD\tEUR\t2\rEUR\tUSD\t4\r", "EUR*4=USD EUR{x+1|x-1}GBP "},
        // No line of these is a rate of the document.
        {"VLMUPD\n--USD\tEUR\t9\nUSD\tEUR\nUSD\tEUR\t\nUSD\tEUR\t0\nUSD\tEUR\t1-1\nUSD\tEUR\ttext\nUSD EUR 2\n"
         "USD\tEUR\t1/0\nUSD\tXXX\t2\nXXX\tUSD\t2\n\tEUR\t2\nUSD\t\t2\nUSD\tUSD\t2\nUSD\tEUR\t2\t3\n",
         BEFORE},
    };
    for (const auto& [update, conversions] : cases) {
        files.Add(catalog.Folder() + u"Currency.cnv", before);
        CVelmConversionDoc& document = Open();
        ASSERT_EQ(Conversions(document), BEFORE);
        EXPECT_TRUE(MergeText(document, update));
        EXPECT_EQ(Conversions(document), conversions);
        EXPECT_EQ(Conversions(Open()), conversions) << "on the disk";
        EXPECT_FALSE(IsPending()) << "it is used up in any case";
    }
    const auto twins = MakeConversionDoc(services.Services(), u"Twins", {u"X", u"x", u"X"});
    ASSERT_TRUE(MergeText(*twins, "VLMUPD\nx\tX\t2\n"));
    EXPECT_EQ(twins->conversions.at(0)->unit1, twins->GetItem(0)) << "the first two units that carry the identifier";
    EXPECT_EQ(twins->conversions.at(0)->unit2, twins->GetItem(1));
}

TEST_F(MergeTest, StampsTheDocument) {
    MergeText(Open(), "VLMUPD\n--Updated:2024-07-05\n--updated:not this\n--Updated: 16:00\n");
    EXPECT_EQ(Open().updatedText, u"Downloaded file timestamp: 2024-07-05Downloaded file timestamp:  16:00");
    MergeText(Open(), "VLMUPD\n");
    EXPECT_NE(Open().updatedText.find(u"7/5/2024"), CVelmString::npos) << ToUtf8(Open().updatedText);
    MergeText(Open(), "VLMUPD\n--Updated:" + std::string(100'000, 'x'));
    EXPECT_EQ(Open().updatedText.size(), 65535U) << "a longer text could not be read again";
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

}  // namespace
}  // namespace velm::test
