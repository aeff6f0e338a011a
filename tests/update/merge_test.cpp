#include "update/merge.h"

#include <gtest/gtest.h>

#include <string>

#include "support/faulty_files.h"
#include "support/sample_documents.h"
#include "support/temporary_folder.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

class MergeTest : public testing::Test {
protected:
    MergeTest() { catalog.SetFolder(folder.Path()); }

    /// Stores a currency file, three units joined in a row, and makes it the catalogue's document.
    CVelmConversionDoc& Currency() {
        const auto document =
            MakeConversionDoc(services.Services(), u"Currency", {u"USD", u"EUR", u"GBP", u"", u"JPY"});
        Join(*document, 0, 1, 0.5, 3.0);
        CVelmConversion& formula = Join(*document, 1, 2, 1.0);
        formula.formulaFlag = 1;
        formula.forwardFormula = u"x+1";
        formula.reverseFormula = u"x-1";
        EXPECT_TRUE(document->Save(folder.Path()));
        return Open();
    }

    CVelmConversionDoc& Open() {
        catalog.documents.clear();
        catalog.AddFile(u"Currency.cnv");
        return static_cast<CVelmConversionDoc&>(*catalog.Activate(0));
    }

    bool MergeText(CVelmConversionDoc& document, std::string_view text, CVelmStringView name = u"Currency.upd") {
        folder.WriteText(name, text);
        return Merge(document, catalog, context);
    }

    static constexpr const char* BEFORE = "USD*0.5+offset=EUR EUR{x+1|x-1}GBP ";

    TemporaryFolder folder;
    FaultyFiles files{SystemFiles()};
    TestServices services{files};
    FormulaContext context{services.clock};
    CVelmCatalog catalog{services.Services()};
};

TEST_F(MergeTest, SetsReversesReplacesAndAddsConversions) {
    CVelmConversionDoc& document = Currency();
    ASSERT_EQ(Conversions(document), BEFORE);
    EXPECT_TRUE(MergeText(document,
                          "VLMUPD 1\r\n--File Name:Currency\r\n"
                          "eur\tusd\t1/0.8\r\n"
                          "EUR\tGBP\t0.75\r\n"
                          "USD\tJPY\t150"));
    const char* const expected = "EUR*1.25=USD EUR*0.75=GBP USD*150.=JPY ";
    EXPECT_EQ(Conversions(document), expected);
    EXPECT_EQ(Conversions(Open()), expected) << "on the disk";
    EXPECT_FALSE(folder.Contains(u"Currency.upd"));
}

TEST_F(MergeTest, SkipsEveryLineThatIsNoRateOfTheDocument) {
    CVelmConversionDoc& document = Currency();
    EXPECT_TRUE(MergeText(document,
                          "VLMUPD\n--USD\tEUR\t9\nUSD\tEUR\nUSD\tEUR\t\nUSD\tEUR\t0\nUSD\tEUR\t1-1\nUSD\tEUR\ttext\n"
                          "USD\tEUR\t1/0\nUSD\tXXX\t2\nXXX\tUSD\t2\n\tEUR\t2\nUSD\t\t2\nUSD\tUSD\t2\nUSD\tEUR\t2\t3\n"
                          "USD EUR 2\n"));
    EXPECT_EQ(Conversions(document), BEFORE);
    EXPECT_FALSE(folder.Contains(u"Currency.upd")) << "it is used up all the same";
}

TEST_F(MergeTest, TheFirstLineSaysNothingAndTheLastRateOfAPairHolds) {
    CVelmConversionDoc& document = Currency();
    EXPECT_TRUE(MergeText(document, "VLMUPDUSD\tJPY\t1\rUSD\tEUR\t2\rEUR\tUSD\t4\r"));
    EXPECT_EQ(Conversions(document), "EUR*4.=USD EUR{x+1|x-1}GBP ");
}

TEST_F(MergeTest, EqualIdentifiersMeanTheFirstTwoUnitsThatCarryThem) {
    const auto document = MakeConversionDoc(services.Services(), u"Twins", {u"X", u"x", u"X"});
    ASSERT_TRUE(MergeText(*document, "VLMUPD\nx\tX\t2\n", u"Twins.upd"));
    ASSERT_EQ(document->conversions.size(), 1U);
    EXPECT_EQ(document->conversions[0]->unit1, document->GetItem(0));
    EXPECT_EQ(document->conversions[0]->unit2, document->GetItem(1));
}

TEST_F(MergeTest, StampsTheDocument) {
    CVelmConversionDoc& document = Currency();
    MergeText(document, "VLMUPD\n--Updated:2024-07-05\n--updated:not this\n--Updated: 16:00\n");
    EXPECT_EQ(ToUtf8(document.updatedText), "Downloaded file timestamp: 2024-07-05Downloaded file timestamp:  16:00");

    CVelmConversionDoc& again = Open();
    EXPECT_EQ(again.updatedText.substr(0, 10), u"Downloaded");
    MergeText(again, "VLMUPD\n");
    EXPECT_NE(again.updatedText.find(u"7/5/2024"), CVelmString::npos) << ToUtf8(again.updatedText);

    MergeText(again, "VLMUPD\n--Updated:" + std::string(100'000, 'x'));
    EXPECT_EQ(Open().updatedText.size(), 65535U) << "a longer text could not be read again";
}

TEST_F(MergeTest, LeavesEverythingAloneWithoutAnUpdateFile) {
    CVelmConversionDoc& document = Currency();
    const Bytes before = folder.Read(u"Currency.cnv");
    EXPECT_FALSE(Merge(document, catalog, context));
    for (const char* text :
         {"", "VLMUP", "vlmupd\nUSD\tEUR\t2\n", "VLMLST\nUSD\tEUR\t2\n", "\nVLMUPD\nUSD\tEUR\t2\n"}) {
        EXPECT_FALSE(MergeText(document, text)) << text;
        EXPECT_TRUE(folder.Contains(u"Currency.upd")) << text;
    }
    EXPECT_EQ(Conversions(document), BEFORE);
    EXPECT_FALSE(document.IsModified());
    EXPECT_EQ(folder.Read(u"Currency.cnv"), before);
}

TEST_F(MergeTest, TheUpdateFileStaysUntilTheDocumentIsSaved) {
    CVelmConversionDoc& document = Currency();
    const Bytes before = folder.Read(u"Currency.cnv");
    const std::string update = "VLMUPD\nUSD\tEUR\t2\n";
    files.failingOpenForWriting = true;
    EXPECT_TRUE(MergeText(document, update));
    EXPECT_EQ(Conversions(document), "USD*2.=EUR EUR{x+1|x-1}GBP ");
    EXPECT_TRUE(document.IsModified());
    EXPECT_TRUE(folder.Contains(u"Currency.upd"));
    EXPECT_EQ(folder.Read(u"Currency.cnv"), before);

    files.failingOpenForWriting = false;
    EXPECT_TRUE(Merge(Open(), catalog, context)) << "merged again when it is opened the next time";
    EXPECT_EQ(Conversions(Open()), "USD*2.=EUR EUR{x+1|x-1}GBP ");
    EXPECT_FALSE(folder.Contains(u"Currency.upd"));
}

TEST_F(MergeTest, AnUpdateFileThatCannotBeReadWholeChangesNothing) {
    CVelmConversionDoc& document = Currency();
    std::string update = "VLMUPD\nUSD\tEUR\t2\n";
    while (update.size() < 20'000) {
        update += "--filling\n";
    }
    files.reads = 0;
    files.failingRead = 2;
    EXPECT_FALSE(MergeText(document, update));
    EXPECT_EQ(Conversions(document), BEFORE);
    EXPECT_TRUE(folder.Contains(u"Currency.upd"));
}

TEST_F(MergeTest, ADocumentThatDoesNotLoadIsNotWrittenOver) {
    Currency();
    Bytes damaged = folder.Read(u"Currency.cnv");
    damaged.back() ^= 1;
    damaged.push_back(0);
    folder.Write(u"Currency.cnv", damaged);
    CVelmConversionDoc document(services.Services());
    document.fileName = u"Currency";
    document.loaded = false;
    EXPECT_FALSE(MergeText(document, "VLMUPD\nUSD\tEUR\t2\n"));
    EXPECT_EQ(folder.Read(u"Currency.cnv"), damaged);
    EXPECT_TRUE(folder.Contains(u"Currency.upd"));
}

TEST_F(MergeTest, HappensWhenTheCatalogueOpensTheDocument) {
    Currency();
    MakeConversionDoc(services.Services(), u"Other")->Save(folder.Path());
    catalog.documents.clear();
    catalog.AddFiles(CVelmStringView(u"Other.cnv\0Currency.cnv\0", 23));
    MergeWhenOpened(catalog, context);
    folder.WriteText(u"CURRENCY.upd", "VLMUPD\nUSD\tEUR\t2\n");
    catalog.Activate(0);
    EXPECT_TRUE(folder.Contains(u"CURRENCY.upd"));
    catalog.Activate(1);
    EXPECT_FALSE(folder.Contains(u"CURRENCY.upd"));
    EXPECT_EQ(Conversions(Open()), "USD*2.=EUR EUR{x+1|x-1}GBP ");
}

TEST_F(MergeTest, TakesTimeInProportionToItsInput) {
    CVelmConversionDoc document(services.Services());
    document.fileName = u"Large";
    std::string update = "VLMUPD\n";
    for (int number = 0; number < 20'000; ++number) {
        auto item = std::make_unique<CVelmValueItem>();
        item->identifier = FromUtf8("u" + std::to_string(number));
        document.AddItem(std::move(item));
        update += "u" + std::to_string(number) + "\tu" + std::to_string(19'999 - number) + "\t2\n";
    }
    EXPECT_TRUE(MergeText(document, update, u"Large.upd"));
    // Every pair stands there in both directions.
    EXPECT_EQ(document.conversions.size(), 10'000U);
}

}  // namespace
}  // namespace velm::test
