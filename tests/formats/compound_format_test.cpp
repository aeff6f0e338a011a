#include "formats/compound_format.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velm {
namespace {

const CVelmCompoundParts FEET = {{{u"ft", 1}, {u"in", 12}, {}, {}}};
const CVelmCompoundParts HOURS = {{{u"h", 1.0 / 3600}, {u"min", 60}, {u"s", 60}, {}}};
const CVelmCompoundParts PLAIN = {{{u"", 1}, {}, {}, {}}};
const CVelmCompoundParts FOUR = {{{u"a", 1}, {u"b", 10}, {u"c", 10}, {u"d", 10}}};
const CVelmCompoundParts ODD = {{{u"x", HUGE_VAL}, {u"y", -2}, {u"z", std::nan("")}, {}}};
const CVelmCompoundParts BACKWARDS = {{{u"x", -1}, {u"y", 10}, {}, {}}};
const CVelmCompoundParts NOTHING;

TEST(CompoundFormat, PartsAreWholeNumbersButTheLast) {
    const struct {
        const CVelmCompoundParts& parts;
        double value;
        const char* text;
    } cases[] = {{FEET, 5.25, "5 ft 3 in "},
                 {FEET, -5.25, "(5 ft 3 in )"},
                 {FEET, 0, "0 ft 0 in "},
                 {FEET, 5 + 11.9999 / 12, "5 ft 12 in "},
                 {FEET, 1234567.5, "1234567 ft 6 in "},
                 {FEET, HUGE_VAL, "inf ft nan in "},
                 {FEET, std::nan(""), "nan ft nan in "},
                 {HOURS, 3725, "1 h 2 min 5 s "},
                 {HOURS, 3725.5, "1 h 2 min 5.5 s "},
                 {PLAIN, 2.71828, "2.718 "},
                 {FOUR, 1.2345, "1 a 2 b 3 c 4.5 d "},
                 {ODD, 1, "inf x nan y nan z "},
                 {BACKWARDS, 2.5, "-3 x 5 y "},
                 {NOTHING, 7, ""}};
    for (const auto& [parts, value, text] : cases) {
        EXPECT_EQ(ToUtf8(FormatCompound(parts, value)), text);
    }
    std::array<CVelmString, COMPOUND_PARTS> texts;
    EXPECT_EQ(SplitCompound(FEET, -5.3125, texts), 2);
    EXPECT_EQ(texts[0] + u"|" + texts[1], u"5|3.75") << "without sign and labels";
    EXPECT_EQ(SplitCompound(FOUR, 1.2345, texts), 4);
    EXPECT_EQ(SplitCompound(NOTHING, 1, texts), 0);
}

TEST(CompoundFormat, GroupsAreReadNumberByNumber) {
    const struct {
        const CVelmCompoundParts& parts;
        CVelmStringView group;
        double value;
    } cases[] = {{FEET, u"[5 3]", 5.25},
                 {FEET, u"[5ft3.75in]", 5.3125},
                 {FEET, u"[-5, -3]", 5.25},
                 {FEET, u"[5]", 5},
                 {FEET, u"[x]", 0},
                 {FEET, u"[. 6]", 0.5},
                 {FEET, u"[1.2.5 0]", 1.25},
                 {FEET, u"[5 3 7 7 7]", 5.25},
                 {FEET, u"[5 3] 9", 5.25},
                 {HOURS, u"[1h 2m 5s]", 3725},
                 {FOUR, u"[1 2 3 4 5 6]", 1.234},
                 {NOTHING, u"[1 2]", 0}};
    for (const auto& [parts, group, value] : cases) {
        EXPECT_DOUBLE_EQ(ParseCompound(parts, group), value) << ToUtf8(group);
    }
    EXPECT_DOUBLE_EQ(ParseCompound({{{u"", 2}, {u"", -3}, {u"", 4}, {}}}, u"[8 9 9]"), 4);
    EXPECT_FALSE(std::isfinite(ParseCompound(FEET, u"[" + CVelmString(400, u'9') + u"]")));
    for (int i = 0; i < 5000; ++i) {
        const double value = i * i * 0.0137;
        EXPECT_NEAR(ParseCompound(FEET, u"[" + FormatCompound(FEET, value) + u"]"), value, 0.0006 / 12);
        EXPECT_NEAR(ParseCompound(HOURS, u"[" + FormatCompound(HOURS, value) + u"]"), value, 0.0006);
    }
}

}  // namespace
}  // namespace velm
