#include "tallyra/calculator.h"

#include <gtest/gtest.h>

#include "formats/format_codes.h"
#include "support/memory_files.h"
#include "support/test_services.h"
#include "tallyra/tape.h"

namespace velm::test {
namespace {

class CalculatorTest : public testing::Test {
protected:
    /// The value as shown, or what is wrong and the place of it: "Division by zero at 1+2".
    std::string Compute(std::u16string_view line) {
        const CalculatorResult result = calculator.Compute(line);
        if (result.computed) {
            return ToUtf8(FormatResult(result.value, FMT_DECIMAL));
        }
        return ToUtf8(result.fault.message) + " at " + std::to_string(result.fault.position) + "+" +
               std::to_string(result.fault.length);
    }

    CVelmCalculator calculator{SystemClock()};
};

TEST_F(CalculatorTest, RemembersTheLastResultAndNamedValues) {
    EXPECT_EQ(Compute(u"2+3"), "5");
    EXPECT_EQ(Compute(u"ans*ans"), "25");
    EXPECT_EQ(Compute(u"R = 3.5"), "3.5");
    EXPECT_EQ(Compute(u"r*2"), "7");
    EXPECT_EQ(Compute(u"(r=3.5)"), "-1") << "in parentheses it is a comparison";
    EXPECT_EQ(Compute(u"r+1=4.5"), "-1") << "and where no plain name stands before it";
    EXPECT_EQ(Compute(u"r = 1/0"), "Division by zero at 5+1");
    EXPECT_EQ(Compute(u"r"), "3.5") << "a failed definition changes nothing";
    EXPECT_EQ(Compute(u"pi = 3"), "\"pi\" has a meaning of its own in formulas at 0+3");
}

TEST_F(CalculatorTest, SaysWhatIsWrongAndWhere) {
    EXPECT_EQ(Compute(u""), "There is nothing to calculate at 0+0");
    EXPECT_EQ(Compute(u"(1+2"), "The \")\" for this \"(\" is missing at 0+1");
    EXPECT_EQ(Compute(u"1+2)"), "There is no \"(\" for this \")\" at 3+1");
    EXPECT_EQ(Compute(u"1+"), "Something is missing at the end at 2+0");
    EXPECT_EQ(Compute(u"1+*2"), "A value is missing before \"*\" at 2+1");
    EXPECT_EQ(Compute(u"2 12x"), "\"12x\" is no number at 2+3");
    EXPECT_EQ(Compute(u"2 pi"), "An operator is missing before \"pi\" at 2+2");
    EXPECT_EQ(Compute(u"2 ? 3"), "\"?\" means nothing in a formula at 2+1");
    EXPECT_EQ(Compute(u"1/(2-2)"), "Division by zero at 1+1");
    EXPECT_EQ(Compute(u"2*foo+1"), "There is no value named \"foo\" at 2+3");
    EXPECT_EQ(Compute(u"foo(2)"), "There is no function named \"foo\" at 0+3");
    EXPECT_EQ(Compute(u"sqrt(1,2)"), "sqrt takes 1 argument, not 2 at 0+4");
    EXPECT_EQ(Compute(u"1+sqrt(-4)"), "sqrt needs a number that is not below 0 at 2+4");
    EXPECT_EQ(Compute(u"3.5!"), "A factorial needs a whole number from 0 to 149 at 3+1");
    EXPECT_EQ(Compute(u"1e300*1e300"), "The result is too large at 5+1");
    EXPECT_EQ(Compute(u"iif(1,2)"), "iif takes a condition and a value for each choice, and one value more at 0+3");
    EXPECT_EQ(Compute(u"iif(0,1/0,ln(0))"), "ln needs a number above 0 at 10+2")
        << "the choice that was taken is named";
}

TEST_F(CalculatorTest, ShowsEveryBaseAndStepsTheAngle) {
    EXPECT_EQ(ToUtf8(FormatResult(255, FMT_HEX)), "00FF");
    EXPECT_EQ(ToUtf8(FormatResult(8, FMT_OCTAL)), "0010");
    EXPECT_EQ(ToUtf8(FormatResult(5, FMT_BINARY)), "0101");
    EXPECT_STREQ(ToUtf8(calculator.AngleLabel()).c_str(), "Rad");
    EXPECT_STREQ(ToUtf8(calculator.CycleAngle()).c_str(), "Deg");
    EXPECT_EQ(Compute(u"sin(30)"), "0.5");
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
