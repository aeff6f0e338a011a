#include "model/identifier_match.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "data/data_file.h"

namespace velm::test {
namespace {

char16_t OtherCase(char16_t letter) {
    return static_cast<char16_t>(IsLetter(letter) ? letter ^ 0x20 : letter);
}

/// All small, all capital, and with each letter and all that follow it in the other case; the text itself is left out.
std::set<CVelmString> InOtherCases(const CVelmString& text) {
    std::set<CVelmString> variants = {ToLowerAscii(text)};
    CVelmString capitals = ToLowerAscii(text);
    std::transform(capitals.begin(), capitals.end(), capitals.begin(), OtherCase);
    variants.insert(capitals);
    for (std::size_t i = 0; i < text.size(); ++i) {
        CVelmString variant = text;
        variant[i] = OtherCase(variant[i]);
        variants.insert(variant);
        std::transform(variant.begin() + static_cast<std::ptrdiff_t>(i) + 1, variant.end(),
                       variant.begin() + static_cast<std::ptrdiff_t>(i) + 1, OtherCase);
        variants.insert(variant);
    }
    variants.erase(text);
    return variants;
}

CVelmItem* CalledInSomeCase(const CVelmDocument& document, const CVelmString& text) {
    for (const auto& item : document.items) {
        if (!text.empty() && ToLowerAscii(item->identifier) == ToLowerAscii(text)) {
            return item.get();
        }
    }
    return nullptr;
}

/// The power of ten between a unit and one that may be its base; 0 when they are not that far apart or not linked. For
/// a prefix behind "/" that of one per unit.
double PowerBetween(DataFile& file, CVelmItem& unit, const CVelmItem& base, bool isDivisor) {
    file.Enter(unit, 1.0);
    const double power = std::round(std::log10(base.value));
    const bool isPower = base.state == STATE_VALID && std::abs(base.value / std::pow(10, power) - 1) < 1e-12;
    return !isPower ? 0 : isDivisor ? -power : power;
}

/// Compares the size of the unit found with the prefixes that its text may have. True when there are any. There is
/// nothing smaller than a bit.
bool IsPrefixKept(DataFile& file, const CVelmString& typed, CVelmItem& found) {
    bool compared = false;
    for (std::size_t i = 0; i + 1 < typed.size(); ++i) {
        const bool isSmaller = !file->fileName.starts_with(u"Data") && (typed[i] == u'm' || typed[i] == u'p');
        const bool isLarger = typed[i] == u'M' || typed[i] == u'P';
        CVelmString unprefixed = typed;
        unprefixed.erase(i, 1);
        const CVelmItem* const base = CalledInSomeCase(*file, unprefixed);
        if (base != nullptr && IsLetter(typed[i + 1]) && (isSmaller || isLarger)) {
            const double power = PowerBetween(file, found, *base, i > 0 && typed[i - 1] == u'/');
            compared = compared || power != 0;
            EXPECT_FALSE(isLarger ? power < 0 : power > 0)
                << ToUtf8(typed) << " is taken for " << ToUtf8(found.identifier);
        }
    }
    return compared;
}

/// A small b where the file has a bit by the same prefix.
bool IsBit(const CVelmDocument& document, const CVelmString& typed) {
    const std::size_t b = typed.find(u'b');
    CVelmString bits = typed;
    return b <= 2 && CalledInSomeCase(document, bits.replace(b, 1, u"bit")) != nullptr;
}

TEST(Identifiers, FindTheirUnitsAndInAnotherCaseNoneOfAnotherSize) {
    int comparedPrefixes = 0;
    int refusedBits = 0;
    for (const CVelmString& name : DataFileNames(KIND_CONVERSION)) {
        SCOPED_TRACE(ToUtf8(name));
        DataFile file(name);
        const CVelmIdentifierIndex index(*file);
        for (const auto& item : file->items) {
            EXPECT_EQ(index.Match(item->identifier).item, item.get()) << ToUtf8(item->identifier);
            EXPECT_EQ(index.Match(item->name).item, item.get()) << ToUtf8(item->name);
            for (const CVelmString& typed : InOtherCases(item->identifier)) {
                CVelmItem* const found = index.Match(typed).item;
                if (found == nullptr) {
                    refusedBits += IsBit(*file, typed) ? 1 : 0;
                    continue;
                }
                EXPECT_FALSE(IsBit(*file, typed)) << ToUtf8(typed) << " is taken for " << ToUtf8(found->identifier);
                comparedPrefixes += IsPrefixKept(file, typed, *found) ? 1 : 0;
            }
        }
    }
    EXPECT_GT(comparedPrefixes, 100);
    EXPECT_GT(refusedBits, 20);
}

}  // namespace
}  // namespace velm::test
