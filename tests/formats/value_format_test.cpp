#include "formats/value_format.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

#include "formats/format_table.h"
#include "formula/evaluate.h"
#include "support/fixed_clock.h"
#include "support/fixed_locale.h"
#include "support/table.h"

namespace velm {
namespace {

const test::FixedClock CLOCK;  // 2024-07-05 09:05:03

std::optional<double> Parse(const CVelmValueFormat& format, CVelmStringView text) {
    FormulaContext context(CLOCK);
    double value = 0;
    return format.ParseValueText(CVelmString(text), context, value) ? std::optional(value) : std::nullopt;
}

/// 64 and unions are no formats.
std::uint32_t CodeOf(const std::string& word) {
    const FormatKind* const format = FindFormat(word);
    return format != nullptr ? format->code : word == "hex octal" ? FMT_HEX | FMT_OCTAL : 64;
}

CVelmValueFormat Feet() {
    CVelmValueFormat format;
    format.SetAllowedFormats(FMT_DECIMAL | FMT_COMPOUND);
    format.compoundParts = {{{u"ft", 1}, {u"in", 12}, {}, {}}};
    return format;
}

TEST(ValueFormat, AllowedFormatsDrawTheOthersInAndAssignmentTypesAsItIsShown) {
    CVelmValueFormat format;
    const auto formats = [&format] {
        return std::tuple(format.allowedFormats, format.displayFormat, format.inputFormat);
    };
    format.SetAllowedFormats(FMT_HEX | FMT_BINARY);
    EXPECT_EQ(formats(), std::tuple(FMT_HEX | FMT_BINARY, FMT_HEX, FMT_HEX));
    format.inputFormat = FMT_BINARY;
    format.SetAllowedFormats(FMT_BINARY | FMT_CURRENCY);
    EXPECT_EQ(formats(), std::tuple(FMT_BINARY | FMT_CURRENCY, FMT_BINARY, FMT_BINARY));
    format.SetAllowedFormats(0);
    EXPECT_EQ(formats(), std::tuple(FMT_DECIMAL, FMT_DECIMAL, FMT_DECIMAL));

    CVelmValueFormat source = Feet();
    source.displayFormat = FMT_COMPOUND;
    const CVelmValueFormat copy = source;
    EXPECT_EQ(copy.inputFormat, FMT_DECIMAL) << "a copy is the same";
    format = source;
    EXPECT_EQ(formats(), std::tuple(FMT_DECIMAL | FMT_COMPOUND, FMT_COMPOUND, FMT_COMPOUND));
    EXPECT_EQ(format.compoundParts[1].label, u"in");
    EXPECT_EQ(format.compoundParts[1].factor, 12);
}

TEST(ValueFormat, ValuesAreTypedInTheFormatOfATab) {
    CVelmValueFormat format;
    const auto typed = [&format](std::uint32_t allowed, std::uint32_t input) {
        format.allowedFormats = allowed;
        format.inputFormat = input;
        return format.TypedFormat();
    };
    EXPECT_EQ(typed(FMT_DECIMAL | FMT_HEX, FMT_HEX), FMT_HEX);
    EXPECT_EQ(typed(FMT_HEX | FMT_BINARY, FMT_OCTAL), FMT_HEX) << "not allowed";
    EXPECT_EQ(typed(FMT_CURRENCY | FMT_DECIMAL, FMT_CURRENCY), FMT_DECIMAL) << "one tab for both";
    EXPECT_EQ(typed(FMT_DATE | FMT_DATETIME | FMT_COMPOUND, FMT_DATE), FMT_DATETIME) << "one tab for both";
    EXPECT_EQ(typed(64, 64), FMT_DECIMAL) << "no tab";
}

TEST(ValueFormat, ValuesAreShownAndTypedAsTheCodeSays) {
    CVelmValueFormat format = Feet();
    for (const auto& row : test::ReadTable(VELMORA_TESTS "/formats/values.txt")) {
        SCOPED_TRACE(row.at(0) + " " + row.at(1));
        const double value = std::strtod(row.at(1).c_str(), nullptr);
        format.displayFormat = format.inputFormat = CodeOf(row.at(0));
        EXPECT_EQ(ToUtf8(format.FormatValue(value, test::FixedLocale())), row.at(2));
        EXPECT_EQ(ToUtf8(format.FormatValueForInput(value)), row.at(3));
    }
    std::array<CVelmString, COMPOUND_PARTS> texts;
    EXPECT_EQ(SplitCompound(format.compoundParts, -5.25, texts), 2);
    EXPECT_EQ(texts[1], u"3");
}

TEST(ValueFormat, TypedTextsAreReadAsInTheTable) {
    for (const auto& row : test::ReadTable(VELMORA_TESTS "/formats/typed.txt")) {
        SCOPED_TRACE(row.at(0) + " " + row.at(1));
        FormulaContext context(CLOCK);
        double value = 0;
        const bool read = Feet().ParseTyped(FromUtf8(row.at(1)), CodeOf(row.at(0)), context, value);
        EXPECT_EQ(read ? test::Print("%.12g", value) : "fails", row.at(2));
    }
    EXPECT_EQ(Parse(CVelmValueFormat(), u"[5 3]"), std::nullopt) << "compound groups only where they are allowed";

    // A group out of range fails, whatever names are defined.
    FormulaContext context(CLOCK);
    ASSERT_TRUE(DefineVariable(context, u"inf", 1) && DefineVariable(context, u"nan", 1));
    CVelmValueFormat tiny = Feet();
    tiny.compoundParts[0].factor = tiny.compoundParts[1].factor = 1e-200;
    double value = 7;
    EXPECT_FALSE(Feet().ParseValueText(u"[" + CVelmString(400, u'9') + u"]", context, value));
    EXPECT_FALSE(tiny.ParseValueText(u"[1 0]", context, value)) << "0 divided by an underflow";
    EXPECT_EQ(value, 7);
}

TEST(ValueFormat, LongTextsTakeTimeInProportion) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Parse(Feet(), test::Repeat(u"+[1]", 60000).substr(1)), 60000);
    for (const CVelmStringView piece : {u"[", u"{", u"[]"}) {
        EXPECT_EQ(Parse(Feet(), test::Repeat(piece, 1000000)), std::nullopt);
    }
    EXPECT_EQ(Parse(Feet(), u"[" + test::Repeat(u"1.", 500000) + u"]"), 1.11111111111);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(taken.count(), 5.0) << "seconds";
}

}  // namespace
}  // namespace velm
