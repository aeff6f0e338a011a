#include "model/identifier_match.h"

#include <gtest/gtest.h>

#include "model/calculation_document.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

/// The identifier of the item that is meant, or those of the candidates: "MW", "MW or mW", "nothing".
std::string Matched(const CVelmDocument& document, CVelmStringView text) {
    const CVelmIdentifierMatch match = CVelmIdentifierIndex(document).Match(text);
    if (match.item != nullptr) {
        EXPECT_TRUE(match.candidates.empty());
        return ToUtf8(match.item->identifier);
    }
    std::string candidates;
    for (const CVelmItem* item : match.candidates) {
        candidates += (candidates.empty() ? "" : " or ") + ToUtf8(item->identifier);
    }
    return candidates.empty() ? "nothing" : candidates + "?";
}

/// The file's units are "ID unit" by name.
std::string Matched(std::initializer_list<const char16_t*> identifiers, CVelmStringView text) {
    return Matched(*MakeConversionDoc(SystemServices(), u"f", identifiers), text);
}

TEST(IdentifierMatch, AnIdentifierThenANameThenEitherInAnotherCaseWhenItIsTheOnlyOne) {
    const auto document = MakeConversionDoc(SystemServices(), u"f", {u"km", u"USD", u"lb unit", u"lb", u"x", u"X"});
    document->items[4]->name = document->items[5]->name = u"Same";
    EXPECT_EQ(Matched(*document, u"km"), "km");
    EXPECT_EQ(Matched(*document, u"km unit"), "km");
    EXPECT_EQ(Matched(*document, u"lb unit"), "lb unit") << "an identifier comes before a name";
    EXPECT_EQ(Matched(*document, u"KM"), "km");
    EXPECT_EQ(Matched(*document, u"Usd"), "USD");
    EXPECT_EQ(Matched(*document, u"USD UNIT"), "USD");
    EXPECT_EQ(Matched(*document, u"LB UNIT"), "lb unit or lb?");
    EXPECT_EQ(Matched(*document, u"Same"), "x or X?");
    EXPECT_EQ(Matched(*document, u"same"), "x or X?");
    EXPECT_EQ(Matched(*document, u"kg"), "nothing");
    EXPECT_EQ(Matched(*document, u""), "nothing");
}

TEST(IdentifierMatch, ACaseThatMayMeanAnotherPrefixIsNotTaken) {
    const auto power = {u"W", u"kW", u"MW", u"hp"};
    EXPECT_EQ(Matched(power, u"mW"), "MW?");
    EXPECT_EQ(Matched(power, u"mw"), "MW?");
    EXPECT_EQ(Matched(power, u"Mw"), "MW");
    EXPECT_EQ(Matched(power, u"KW"), "kW") << "K is no other prefix";
    const auto both = {u"W", u"MW", u"mW"};
    EXPECT_EQ(Matched(both, u"mw"), "MW or mW?");
    EXPECT_EQ(Matched(both, u"MW UNIT"), "MW or mW?");
    EXPECT_EQ(Matched(both, u"Mw"), "MW") << "typed with both cases, the M is meant";
    // A prefix behind another word or within one, of a unit of the file alone, of a unit that only the rule knows.
    EXPECT_EQ(Matched({u"N/m", u"N/mm"}, u"n/MM"), "N/mm?");
    EXPECT_EQ(Matched({u"Nm", u"Nmm"}, u"NMM"), "Nmm?");
    EXPECT_EQ(Matched({u"foo", u"mfoo"}, u"Mfoo"), "mfoo?");
    EXPECT_EQ(Matched({u"%", u"mg/kg"}, u"Mg/kg"), "mg/kg?");
    // No prefixes: a minute beside an inch, a pint, a petasecond that is the metric horsepower.
    EXPECT_EQ(Matched({u"in/s", u"min/km"}, u"MIN/KM"), "min/km");
    EXPECT_EQ(Matched({u"L", u"pt"}, u"PT"), "pt");
    EXPECT_EQ(Matched({u"W", u"PS", u"Btu/s"}, u"ps"), "PS");
}

TEST(IdentifierMatch, BitsBytesAndSymbolsThatCaseTellsApartAreNotTakenForEachOther) {
    const auto rates = {u"MB/s", u"Mbit/s", u"kB/s", u"KiB/s", u"bit/s"};
    EXPECT_EQ(Matched(rates, u"Mb/s"), "MB/s or Mbit/s?");
    EXPECT_EQ(Matched(rates, u"mb/S"), "MB/s or Mbit/s?");
    EXPECT_EQ(Matched(rates, u"Kib/s"), "KiB/s?");
    EXPECT_EQ(Matched(rates, u"KB/s"), "kB/s");
    EXPECT_EQ(Matched(rates, u"mbit/s"), "Mbit/s") << "a bit has no thousandths";
    EXPECT_EQ(Matched({u"Mb"}, u"MB"), "Mb?");
    EXPECT_EQ(Matched({u"dB", u"lb", u"hp_b", u"b12"}, u"db"), "dB");
    EXPECT_EQ(Matched({u"dB", u"lb", u"hp_b", u"b12"}, u"LB"), "lb");
    EXPECT_EQ(Matched({u"dB", u"lb", u"hp_b", u"b12"}, u"HP_B"), "hp_b");
    EXPECT_EQ(Matched({u"dB", u"lb", u"hp_b", u"b12"}, u"B12"), "b12");
    EXPECT_EQ(Matched({u"J", u"cal", u"kcal"}, u"Cal"), "cal or kcal?");
    EXPECT_EQ(Matched({u"J", u"cal", u"kcal"}, u"CAL"), "cal");
    EXPECT_EQ(Matched({u"nm", u"nmi"}, u"NM"), "nm or nmi?");
}

TEST(IdentifierMatch, VariablesOfACalculationHaveNoCase) {
    CVelmCalculationDoc document(SystemServices());
    for (const char16_t* identifier : {u"gb", u"mW", u"W"}) {
        document.AddItem(CreateItem(ITEM_FORMULA))->identifier = identifier;
    }
    EXPECT_EQ(Matched(document, u"GB"), "gb");
    EXPECT_EQ(Matched(document, u"MW"), "mW");
    document.AddItem(CreateItem(ITEM_FORMULA))->identifier = u"Gb";
    EXPECT_EQ(Matched(document, u"GB"), "gb or Gb?");
}

}  // namespace
}  // namespace velm::test
