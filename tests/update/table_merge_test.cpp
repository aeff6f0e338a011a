#include "update/table_merge.h"

#include <gtest/gtest.h>

#include "model/rate_days.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

class TableMergeTest : public testing::Test {
protected:
    /// Euro, dollar and pound around the euro; a dirham that is fixed to the dollar, and a fils to the dirham.
    TableMergeTest() {
        velm::test::Join(*document, 0, 1, 1.5, 3);
        velm::test::Join(*document, 2, 0, 1.25);
        velm::test::Join(*document, 1, 3, 4);
        velm::test::Join(*document, 3, 4, 100);
        EXPECT_TRUE(document->Save(u"data"));
    }

    /// The day and the number of rates, or the reason.
    std::string Take(std::string_view table, TableAge age = TableAge::NotOlder) {
        const CVelmTableMerge result = MergeTable(*document, u"data", table, age, services.Services());
        return result.merged ? ToUtf8(DayText(result.day)) + " " + std::to_string(result.rateCount)
                             : ToUtf8(result.errorText);
    }

    std::string Stored() {
        CVelmConversionDoc stored(services.Services());
        EXPECT_TRUE(stored.Load(u"data", true, u"Currency"));
        return Conversions(stored);
    }

    static constexpr const char* BEFORE = "EUR*1.5+3=USD GBP*1.25=EUR USD*4=AED AED*100=FILS ";

    MemoryFiles files;
    TestServices services{files};
    std::unique_ptr<CVelmConversionDoc> document =
        MakeConversionDoc(services.Services(), u"Currency", {u"EUR", u"USD", u"GBP", u"AED", u"FILS", u"CHF"});
};

TEST_F(TableMergeTest, EachRateReplacesTheRouteThatItsCurrencyHad) {
    EXPECT_EQ(Take("date 2024-07-01\nUSD 2\nGBP 0.5\nCHF 0.9"), "2024-07-01 3");
    EXPECT_EQ(Stored(), "EUR*2=USD EUR*0.5=GBP USD*4=AED AED*100=FILS EUR*0.9=CHF ");
    EXPECT_EQ(ToUtf8(document->updatedText), "Rates of 2024-07-01");
    EXPECT_EQ(Take("date 2024-07-02\nAED 9"), "2024-07-02 1") << "a fixed rate gives way";
    EXPECT_EQ(Stored(), "EUR*2=USD EUR*0.5=GBP EUR*9=AED AED*100=FILS EUR*0.9=CHF ");
    EXPECT_EQ(Take("date 2024-07-03\nbase USD\nEUR 0.8\nFILS 300"), "2024-07-03 2") << "another base";
    EXPECT_EQ(Stored(), "USD*0.8=EUR EUR*0.5=GBP EUR*9=AED USD*300=FILS EUR*0.9=CHF ");
}

TEST_F(TableMergeTest, NoSecondRouteIsLeftBetweenItsCurrencies) {
    velm::test::Join(*document, 0, 3, 7);
    JoinByFormulas(*document, 1, 2, u"x*2", u"x/2");
    velm::test::Join(*document, 1, 0, 9);
    EXPECT_EQ(Take("USD 2\nGBP 0.5\nAED 8"), "2024-07-05 3");
    EXPECT_EQ(Stored(), "EUR*2=USD EUR*0.5=GBP AED*100=FILS EUR*8=AED ");
}

TEST_F(TableMergeTest, RatesKeepTheirDaysAndOlderOnesAreRefused) {
    EXPECT_EQ(Take("date 2024-07-01\nUSD 2\nGBP 0.5"), "2024-07-01 2");
    EXPECT_EQ(Take("date 2024-07-03\nUSD 3"), "2024-07-03 1");
    const Bytes days = files.Content(WithSeparator(u"data") + u"Currency.rates");
    const std::string text(days.begin(), days.end());
    EXPECT_EQ(text.substr(text.find('\n') + 1), "EUR\tUSD\t3\t2024-07-03\nEUR\tGBP\t0.5\t2024-07-01\n");
    const std::string older = "date 2024-07-02\nUSD 4\nGBP 0.6";
    EXPECT_EQ(Take(older),
              "the table of rates is not used: its rates are of 2024-07-02, older than those of 2024-07-03 "
              "in the data file");
    EXPECT_EQ(Take("date 2024-07-02\nGBP 0.6"), "2024-07-02 1") << "newer than the rate that it replaces";
    EXPECT_EQ(Take("date 2024-07-06\nUSD 5"), "2024-07-06 1") << "tomorrow is today elsewhere";
    EXPECT_EQ(Take("date 2024-07-07\nUSD 6"), "the table of rates is not used: its day, 2024-07-07, has not come yet");
    EXPECT_EQ(Stored(), "EUR*5=USD EUR*0.6=GBP USD*4=AED AED*100=FILS ");
    EXPECT_EQ(Take(older, TableAge::Any), "2024-07-02 2");
    EXPECT_EQ(Take("date 2999-01-01\nUSD 6", TableAge::Any), "2999-01-01 1");
}

TEST_F(TableMergeTest, WhatFitsNoUnitOrCannotBeReadChangesNothing) {
    const CVelmTableMerge result =
        MergeTable(*document, u"data", "XXX 2\nUSD 2\nYYY 3", TableAge::NotOlder, services.Services());
    EXPECT_EQ(ToUtf8(result.unknown.at(0) + result.unknown.at(1)), "XXXYYY");
    EXPECT_TRUE(result.merged && result.dayIsAssumed && result.day == *ReadDay(u"2024-07-05"));
    const std::string stored = Stored();
    for (const char* const table : {"", "USD 3\nGBP 0", "XXX 3", "base XXX\nUSD 3"}) {
        EXPECT_NE(Take(table, TableAge::Any), "") << table;
        EXPECT_FALSE(document->modified) << table;
    }
    EXPECT_EQ(Stored(), stored);
}

TEST_F(TableMergeTest, ADocumentThatCannotBeWrittenKeepsItsFileAndDays) {
    files.failingOpenForWriting = true;
    EXPECT_EQ(Take("date 2024-07-01\nUSD 2"), "2024-07-01 1");
    EXPECT_TRUE(document->modified);
    files.failingOpenForWriting = false;
    EXPECT_EQ(Stored(), BEFORE);
    EXPECT_EQ(files.Names(), "Currency.cnv ");
}

}  // namespace
}  // namespace velm::test
