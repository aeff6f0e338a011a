#include "model/rate_days.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

class RateDaysTest : public testing::Test {
protected:
    RateDaysTest() {
        Join(*document, 0, 1, 1.5);
        Join(*document, 0, 2, 0.1);
        Join(*document, 3, 1, 0.25);
    }

    CVelmRateDays Read(std::string_view text) {
        files.AddText(PATH, text);
        return CVelmRateDays::Read(*document, u"data", files);
    }

    /// The day of each conversion.
    std::string Days(const CVelmRateDays& days) const {
        std::vector<std::string> texts;
        for (const auto& conversion : document->conversions) {
            const auto day = days.DayOf(*conversion);
            texts.push_back(day ? ToUtf8(DayText(*day)) : "none");
        }
        return velm::test::Join(texts, " ");
    }

    std::string Written() const {
        const Bytes bytes = files.Content(PATH);
        const std::string text(bytes.begin(), bytes.end());
        return text.substr(std::min(text.find('\n') + 1, text.size()));
    }

    const CVelmString PATH = WithSeparator(u"data") + u"Money.rates";
    MemoryFiles files;
    TestServices services{files};
    FormulaContext context{services.clock};
    std::unique_ptr<CVelmConversionDoc> document =
        MakeConversionDoc(services.Services(), u"Money", {u"EUR", u"USD", u"GBP", u"AED", u""});
};

TEST_F(RateDaysTest, AFileGivesBackWhatWasWritten) {
    CVelmRateDays days;
    days.Set(*document->conversions[0], *ReadDay(u"2024-07-05"));
    days.Set(*document->conversions[1], *ReadDay(u"2024-07-04"));
    EXPECT_TRUE(days.Write(*document, u"data", files));
    EXPECT_EQ(Written(), "EUR\tUSD\t1.5\t2024-07-05\nEUR\tGBP\t0.1\t2024-07-04\n");
    EXPECT_EQ(Days(CVelmRateDays::Read(*document, u"data", files)), "2024-07-05 2024-07-04 none");

    document->conversions[0]->factor = 1.6;
    EXPECT_EQ(Days(days), "none 2024-07-04 none") << "an edited rate has no day";
    EXPECT_TRUE(days.Write(*document, u"data", files));
    EXPECT_EQ(Written(), "EUR\tGBP\t0.1\t2024-07-04\n");
    document->conversions[1]->offset = 1;
    EXPECT_TRUE(days.Write(*document, u"data", files) && days.Write(*document, u"data", files));
    EXPECT_FALSE(files.Exists(PATH)) << "a file without a day is removed";
    files.failingOpenForWriting = true;
    document->conversions[1]->offset = 0;
    EXPECT_FALSE(days.Write(*document, u"data", files));
}

TEST_F(RateDaysTest, UnreadableLinesAreLeftOut) {
    EXPECT_EQ(Days(CVelmRateDays::Read(*document, u"data", files)), "none none none");
    EXPECT_EQ(Days(Read("# EUR\tUSD\t1.5\t2024-07-05\n\nEUR\tGBP\t0.1\t2024-07-05\r\nEUR\tUSD\t1.5\n")),
              "none 2024-07-05 none");
    EXPECT_EQ(Days(Read("EUR\tUSD\t1.5x\t2024-07-05\nEUR\tGBP\t0.1\tsoon\nUSD\tAED\t4\t2024-07-05")), "none none none");
    files.failingRead = files.reads + 1;
    EXPECT_EQ(Days(Read("EUR\tUSD\t1.5\t2024-07-05\n")), "none none none");
}

TEST_F(RateDaysTest, AValueIsAsOldAsTheOldestRateOnItsWay) {
    Join(*document, 2, 4, 7);
    const CVelmRateDays days = Read("EUR\tUSD\t1.5\t2024-07-05\nEUR\tGBP\t0.1\t2023-01-02\n");
    document->items[3]->SetValue(8);
    const CVelmItemDays found =
        days.DaysOfValues(SolveConversions(document->items, document->conversions, document->GetItem(3), {}, context));
    std::string text;
    for (const auto& item : document->items) {
        const auto day = found.find(item.get());
        text += day == found.end() ? "none " : ToUtf8(DayText(day->second)) + " ";
    }
    EXPECT_EQ(text, "2024-07-05 none 2023-01-02 none 2023-01-02 ");
    const auto own = [&](std::size_t item) { return days.DayOf(*document->GetItem(item), *document); };
    EXPECT_EQ(own(1), *ReadDay(u"2024-07-05"));
    EXPECT_FALSE(own(0) || own(3)) << "the base has several, a fixed one has none";
    const auto range = days.Range(*document);
    EXPECT_EQ(ToUtf8(DayText(range->first) + u" " + DayText(range->second)), "2023-01-02 2024-07-05");
    EXPECT_FALSE(CVelmRateDays().Range(*document));
}

}  // namespace
}  // namespace velm::test
