#include "formats/compound_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "support/table.h"

namespace velm::test {
namespace {

/// "ft 1, in 12" or, without labels, "1, 12".
CVelmCompoundParts PartsOf(const std::string& text) {
    CVelmCompoundParts parts;
    std::size_t count = 0;
    for (const std::string& part : Split(text, ",")) {
        const std::size_t blank = std::min(part.find(' '), part.size());
        const bool hasLabel = blank < part.size();
        parts.at(count++) = {FromUtf8(hasLabel ? part.substr(0, blank) : ""),
                             std::strtod(part.c_str() + (hasLabel ? blank : 0), nullptr)};
    }
    return parts;
}

TEST(CompoundFormat, WritesNumbersAndReadsGroupsAsInTheTable) {
    for (const auto& row : ReadTable(VELMORA_TESTS "/formats/compound.txt")) {
        const CVelmCompoundParts parts = PartsOf(row.at(0));
        SCOPED_TRACE(row.at(0) + " -> " + row.at(1));
        if (row.at(1).starts_with("[")) {
            EXPECT_DOUBLE_EQ(ParseCompound(parts, FromUtf8(row.at(1))), std::stod(row.at(2)));
        } else {
            const CVelmString text = FormatCompound(parts, std::strtod(row.at(1).c_str(), nullptr));
            EXPECT_EQ(Split(ToUtf8(text), "\n").at(0), row.at(2));
        }
    }
}

TEST(CompoundFormat, SplitsIntoTextsAndReadsBackWhatItShows) {
    const CVelmCompoundParts feet = PartsOf("ft 1, in 12");
    const CVelmCompoundParts hours = PartsOf("h 0.00027777777777777778, min 60, s 60");
    std::array<CVelmString, COMPOUND_PARTS> texts;
    EXPECT_EQ(SplitCompound(feet, -5.3125, texts), 2);
    EXPECT_EQ(texts[0] + u"|" + texts[1], u"5|3.75") << "without sign and labels";
    EXPECT_EQ(SplitCompound(PartsOf("a 1, b 10, c 10, d 10"), 1.2345, texts), 4);
    EXPECT_EQ(SplitCompound({}, 1, texts), 0);
    EXPECT_FALSE(std::isfinite(ParseCompound(feet, u"[" + CVelmString(400, u'9') + u"]")));
    for (int i = 0; i < 5000; ++i) {
        const double value = i * i * 0.0137;
        EXPECT_NEAR(ParseCompound(feet, u"[" + FormatCompound(feet, value) + u"]"), value, 0.0006 / 12);
        EXPECT_NEAR(ParseCompound(hours, u"[" + FormatCompound(hours, value) + u"]"), value, 0.0006);
    }
}

}  // namespace
}  // namespace velm::test
