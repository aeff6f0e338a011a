#include "tallyra/calculator.h"

#include <gtest/gtest.h>

#include "formats/decimal_format.h"
#include "platform/file.h"
#include "support/memory_files.h"
#include "support/table.h"
#include "support/test_services.h"
#include "tallyra/tape.h"

namespace velm::test {
namespace {

class CalculatorTest : public testing::Test {
protected:
    /// The value as shown, the first row of an answer and how many more there are, or what is wrong and the place of
    /// it: "Division by zero at 1+2".
    std::string Compute(std::u16string_view line) {
        const CalculatorResult result = calculator.Compute(line);
        if (result.answer) {
            const auto& rows = result.answer->rows;
            const bool isOne = rows.size() == 1;
            return ToUtf8(isOne ? rows[0].TextWithUnit() : rows.at(0).NamedText()) + (isOne ? "" : ", ...");
        }
        if (result.computed) {
            return ToUtf8(FormatDecimal(result.value, true));
        }
        return ToUtf8(result.fault.message) + " at " + std::to_string(result.fault.position) + "+" +
               std::to_string(result.fault.length);
    }

    CVelmCalculator calculator{SystemServices(), WithSeparator(FromUtf8(VELMORA_DATA_FOLDER)), {}};
};

TEST_F(CalculatorTest, SaysWhatTheTableTells) {
    for (const auto& row : ReadTable(VELMORA_TABLES "/tallyra/lines.txt")) {
        EXPECT_EQ(Compute(FromUtf8(row.at(0))), row.at(1)) << row.at(0);
    }
}

TEST(Tape, KeepsTheLastFiveHundredLines) {
    CVelmTape tape;
    for (int i = 0; i < 600; ++i) {
        tape.Add(FromUtf8(std::to_string(i)), u"x\ty\n");
    }
    ASSERT_EQ(tape.Lines().size(), 500U);
    EXPECT_EQ(tape.Lines().front(), (TapeLine{u"100", u"x y "}));
    EXPECT_EQ(tape.Lines().back().expression, u"599");

    MemoryFiles files;
    TestServices services(files);
    ASSERT_TRUE(tape.Save(services.Services(), u"tape"));
    CVelmTape loaded;
    loaded.Load(services.Services(), u"tape");
    EXPECT_EQ(loaded.Lines(), tape.Lines());
    loaded.Load(services.Services(), u"missing");
    EXPECT_EQ(loaded.Lines().size(), 500U);
}

}  // namespace
}  // namespace velm::test
