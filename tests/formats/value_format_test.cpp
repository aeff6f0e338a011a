#include "formats/value_format.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <optional>
#include <string>

#include "datetime/date_time.h"
#include "support/fixed_clock.h"
#include "support/fixed_locale.h"

namespace velm {
namespace {

const test::FixedClock CLOCK;  // 2024-07-05 09:05:03

std::optional<double> Parse(const CVelmValueFormat& format, CVelmStringView text) {
    FormulaContext context(CLOCK);
    double value = 0;
    return format.ParseValueText(text, context, value) ? std::optional(value) : std::nullopt;
}

CVelmValueFormat Feet() {
    CVelmValueFormat format;
    format.SetAllowedFormats(FMT_DECIMAL | FMT_COMPOUND);
    format.compoundParts = {{{u"ft", 1}, {u"in", 12}, {}, {}}};
    return format;
}

double Value(int year, int month, int day) {
    return DateTime::FromFields(year, month, day).value;
}

TEST(ValueFormat, AllowedFormatsDrawTheOthersIn) {
    CVelmValueFormat format;
    format.SetAllowedFormats(FMT_HEX | FMT_BINARY);
    EXPECT_EQ(format.displayFormat, FMT_HEX);
    EXPECT_EQ(format.inputFormat, FMT_HEX);
    format.inputFormat = FMT_BINARY;
    format.SetAllowedFormats(FMT_BINARY | FMT_CURRENCY);
    EXPECT_EQ(format.displayFormat, FMT_BINARY);
    EXPECT_EQ(format.inputFormat, FMT_BINARY);
    format.SetAllowedFormats(0);
    EXPECT_EQ(format.allowedFormats, FMT_DECIMAL);
    EXPECT_EQ(format.displayFormat, FMT_DECIMAL);
    EXPECT_EQ(format.inputFormat, FMT_DECIMAL);
}

TEST(ValueFormat, AssignmentTypesAsItIsShownAndACopyIsTheSame) {
    CVelmValueFormat source = Feet();
    source.displayFormat = FMT_COMPOUND;
    const CVelmValueFormat copy = source;
    CVelmValueFormat assigned;
    assigned = source;
    EXPECT_EQ(copy.inputFormat, FMT_DECIMAL);
    EXPECT_EQ(assigned.inputFormat, FMT_COMPOUND);
    EXPECT_EQ(assigned.allowedFormats, source.allowedFormats);
    EXPECT_EQ(assigned.compoundParts[1].label, u"in");
    EXPECT_EQ(assigned.compoundParts[1].factor, 12);
}

TEST(ValueFormat, TheCodeChoosesTheText) {
    const double value = -1234.5;
    const struct {
        std::uint32_t code;
        double value;
        const char* shown;
        const char* typed;
    } cases[] = {
        {FMT_DECIMAL, value, "-1,234.5", "-1234.5"},
        {FMT_CURRENCY, value, "(1,234.50)", "-1234.50"},
        {FMT_HEX, 0x12345, "0001 2345", "000012345"},
        {FMT_OCTAL, 8, "0010", "0010"},
        {FMT_BINARY, 5, "0101", "0101"},
        {FMT_COMPOUND, -5.25, "(5 ft 3 in )", "-5.25"},
        {FMT_DATE, 2451544.375, "Sat 1/1/2000", "2451544.375"},
        {FMT_DATETIME, 2451544.375, "Sat 1/1/2000 9:00:00", "2451544.375"},
        {64, value, "-1,234.5", "-1234.5"},
        {FMT_HEX | FMT_OCTAL, value, "-1,234.5", "-1234.5"},
    };
    CVelmValueFormat format = Feet();
    for (const auto& [code, number, shown, typed] : cases) {
        format.displayFormat = code;
        format.inputFormat = code;
        EXPECT_EQ(ToUtf8(format.FormatValue(number, test::FixedLocale())), shown) << "code " << code;
        EXPECT_EQ(ToUtf8(format.FormatValueForInput(number)), typed) << "code " << code;
    }
    std::array<CVelmString, COMPOUND_PARTS> texts;
    EXPECT_EQ(format.SplitCompound(-5.25, texts), 2);
    EXPECT_EQ(ToUtf8(texts[1]), "3");
}

TEST(ValueFormat, TextsForTypingReadBackAsTheEntryReadsThem) {
    // The entry lower-cases the text, puts a 0 before a leading letter and the base's suffix behind.
    const struct {
        std::uint32_t code;
        char16_t suffix;
    } bases[] = {{FMT_HEX, u'h'}, {FMT_OCTAL, u'o'}, {FMT_BINARY, u'b'}};
    CVelmValueFormat format;
    for (const auto& [code, suffix] : bases) {
        format.inputFormat = code;
        for (const double value : {0.0, 1.0, 31.0, 0x12345 * 1.0, 0xABCD * 1.0, 0xFACADE * 1.0, 2147483647.0}) {
            CVelmString text = ToLowerAscii(format.FormatValueForInput(value));
            if (text[0] >= u'a') {
                text.insert(0, u"0");
            }
            EXPECT_EQ(Parse(format, text + suffix), value) << ToUtf8(text) << static_cast<char>(suffix);
        }
    }
}

TEST(ValueFormat, GroupsAreReplacedBeforeTheFormulaIsEvaluated) {
    const CVelmValueFormat feet = Feet();
    const struct {
        CVelmStringView text;
        std::optional<double> value;
    } cases[] = {
        {u"2*3+1", 7},
        {u"[5 3]", 5.25},
        {u"-[5 3]", -5.25},
        {u"[5 3]*2+[0 6]", 11},
        {u"[[5 3]", 5.25},
        {u"{3/5/2004}+7", Value(2004, 3, 12)},
        {u"{TODAY}", Value(2024, 7, 5)},
        {u"{3/5/[4 6]}", Value(0, 3, 5)},
        {u"{x}", 1721422},
        {u"[x]", 0},
        {u"[]", std::nullopt},
        {u"{}", std::nullopt},
        {u"[5 3", std::nullopt},
        {u"{3/5/2004", std::nullopt},
        {u"", std::nullopt},
        {u"1/0", std::nullopt},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(Parse(feet, text), value) << ToUtf8(text);
    }
    EXPECT_EQ(Parse(CVelmValueFormat(), u"[5 3]"), std::nullopt) << "compound groups only where they are allowed";
    EXPECT_EQ(Parse(CVelmValueFormat(), u"{3/5/2004}"), Value(2004, 3, 5));
}

TEST(ValueFormat, AGroupOutOfRangeFailsWhateverNamesAreDefined) {
    FormulaContext context(CLOCK);
    ASSERT_TRUE(DefineVariable(context, u"inf", 1));
    ASSERT_TRUE(DefineVariable(context, u"nan", 1));
    CVelmValueFormat tiny = Feet();
    tiny.compoundParts[0].factor = tiny.compoundParts[1].factor = 1e-200;
    double value = 7;
    EXPECT_FALSE(Feet().ParseValueText(u"[" + CVelmString(400, u'9') + u"]", context, value));
    EXPECT_FALSE(tiny.ParseValueText(u"[1 0]", context, value)) << "0 divided by an underflow";
    EXPECT_EQ(value, 7);
}

TEST(ValueFormat, LongTextsTakeTimeInProportion) {
    const auto repeat = [](CVelmStringView piece, int times) {
        CVelmString text;
        for (int i = 0; i < times; ++i) {
            text += piece;
        }
        return text;
    };
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Parse(Feet(), repeat(u"+[1]", 60000).substr(1)), 60000);
    EXPECT_EQ(Parse(Feet(), repeat(u"[", 1000000)), std::nullopt);
    EXPECT_EQ(Parse(Feet(), repeat(u"{", 1000000)), std::nullopt);
    EXPECT_EQ(Parse(Feet(), repeat(u"[]", 500000)), std::nullopt);
    EXPECT_EQ(Parse(Feet(), u"[" + repeat(u"1.", 500000) + u"]"), 1.11111111111);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(taken.count(), 5.0) << "seconds";
}

}  // namespace
}  // namespace velm
