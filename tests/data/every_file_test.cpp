#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "data/data_file.h"
#include "datetime/date_time.h"
#include "formula/formula.h"

namespace velm::test {
namespace {

std::vector<CVelmString> AllFiles() {
    std::vector<CVelmString> names = DataFileNames(u".cnv");
    const std::vector<CVelmString> calculations = DataFileNames(u".cal");
    names.insert(names.end(), calculations.begin(), calculations.end());
    return names;
}

/// Values of the first unit from which every other unit of a file has a value.
std::vector<double> SampleValues(const CVelmItem& first) {
    if (first.format.displayFormat == FMT_DATETIME) {
        return {DateTime::FromFields(2026, 1, 15, 12).value, DateTime::FromFields(2026, 7, 15, 12).value};
    }
    return {26.2, 41.0};
}

std::vector<double> Values(const CVelmDocument& document) {
    std::vector<double> values;
    for (const auto& item : document.items) {
        EXPECT_EQ(item->state, STATE_VALID) << ToUtf8(item->name);
        values.push_back(item->value);
    }
    return values;
}

TEST(EveryFile, IsThere) {
    const std::vector<CVelmString> names = AllFiles();
    const std::set<CVelmString> present(names.begin(), names.end());
    for (const char16_t* name : {u"Currency.cnv",       u"Weight.cnv",        u"Length.cnv",
                                 u"TipCalc.cal",        u"TimeZones.cnv",     u"ComputerBase.cnv",
                                 u"Area.cnv",           u"Volume.cnv",        u"Cooking.cnv",
                                 u"Temperature.cnv",    u"Speed.cnv",         u"Time.cnv",
                                 u"Pressure.cnv",       u"Energy.cnv",        u"Power.cnv",
                                 u"Force.cnv",          u"Torque.cnv",        u"Angle.cnv",
                                 u"DataStorage.cnv",    u"DataRate.cnv",      u"FuelEconomy.cnv",
                                 u"Frequency.cnv",      u"Density.cnv",       u"Flow.cnv",
                                 u"Acceleration.cnv",   u"Illuminance.cnv",   u"Radioactivity.cnv",
                                 u"Viscosity.cnv",      u"ShoeSizes.cnv",     u"LoanPayment.cal",
                                 u"DiscountAndTax.cal", u"BodyMassIndex.cal", u"DateDifference.cal",
                                 u"OhmsLaw.cal",        u"Circle.cal",        u"CompoundInterest.cal",
                                 u"Triangle.cal",       u"FuelCost.cal",      u"Pace.cal"}) {
        EXPECT_TRUE(present.contains(name)) << ToUtf8(name);
    }
    EXPECT_GE(DataFileNames(u".htm").size(), 3U);
}

TEST(EveryFile, LoadsWholeAndNamesEverything) {
    const std::set<CVelmString> categories = {u"Everyday", u"Science", u"Computer", u"Money", u"Calculations"};
    for (const CVelmString& name : AllFiles()) {
        SCOPED_TRACE(ToUtf8(name));
        DataFile file(name);
        const CVelmDocument& document = file.Document();
        EXPECT_EQ(document.DroppedRecords(), 0);
        EXPECT_FALSE(document.title.empty());
        EXPECT_TRUE(categories.contains(document.category)) << ToUtf8(document.category);
        std::set<CVelmString> identifiers;
        std::set<CVelmString> names;
        for (const auto& item : document.items) {
            EXPECT_TRUE(names.insert(item->name).second) << "twice: " << ToUtf8(item->name);
            EXPECT_TRUE(identifiers.insert(ToLowerAscii(item->identifier)).second)
                << "twice: " << ToUtf8(item->identifier);
            EXPECT_EQ(item->format.displayFormat & item->format.allowedFormats, item->format.displayFormat);
        }
        EXPECT_FALSE(names.contains(u""));
        EXPECT_FALSE(identifiers.contains(u""));
    }
}

TEST(EveryFile, ConversionFormulasParse) {
    for (const CVelmString& name : DataFileNames(u".cnv")) {
        DataFile file(name);
        for (const auto& conversion : file.Conversions().conversions) {
            if (conversion->IsFormula()) {
                EXPECT_TRUE(CVelmFormula(conversion->forwardFormula).Parses()) << ToUtf8(conversion->forwardFormula);
                EXPECT_TRUE(CVelmFormula(conversion->reverseFormula).Parses()) << ToUtf8(conversion->reverseFormula);
            }
        }
    }
}

// With a second route, a value would depend on which of the two the search takes first.
TEST(EveryFile, JoinsTwoUnitsByOneRouteOnly) {
    for (const CVelmString& name : DataFileNames(u".cnv")) {
        DataFile file(name);
        EXPECT_EQ(file.Conversions().conversions.size() + 1, file.Document().ItemCount()) << ToUtf8(name);
    }
}

TEST(EveryFile, ConvertsEveryUnitToEveryOtherAndBack) {
    for (const CVelmString& name : DataFileNames(u".cnv")) {
        DataFile file(name);
        file.ShowAll();
        CVelmDocument& document = file.Document();
        for (const double sample : SampleValues(*document.GetItem(0))) {
            SCOPED_TRACE(ToUtf8(name) + " " + std::to_string(sample));
            file.Enter(*document.GetItem(0), sample);
            const std::vector<double> expected = Values(document);
            for (std::size_t from = 0; from < expected.size(); ++from) {
                file.Enter(*document.GetItem(from), expected[from]);
                const std::vector<double> values = Values(document);
                for (std::size_t to = 0; to < expected.size(); ++to) {
                    EXPECT_NEAR(values[to], expected[to], 1e-13 * std::abs(expected[to]))
                        << ToUtf8(document.GetItem(from)->name) << " to " << ToUtf8(document.GetItem(to)->name);
                }
            }
        }
    }
}

TEST(EveryFile, HidesNoMoreThanItShows) {
    for (const CVelmString& name : AllFiles()) {
        DataFile file(name);
        std::size_t shown = 0;
        for (const auto& item : file.Document().items) {
            shown += item->shown == 1 ? 1 : 0;
        }
        EXPECT_GT(2 * shown, file.Document().ItemCount()) << ToUtf8(name);
    }
}

TEST(EveryFile, CalculatesAllOutputsAsShipped) {
    for (const CVelmString& name : DataFileNames(u".cal")) {
        DataFile file(name);
        file.Document().Recalculate(file.Context());
        for (const auto& item : file.Document().items) {
            EXPECT_EQ(item->state, STATE_VALID) << ToUtf8(name) << ": " << ToUtf8(item->name);
        }
    }
}

TEST(EveryFile, CallsUnitsBySymbolsThatPeopleType) {
    const std::vector<std::pair<CVelmString, std::vector<CVelmString>>> symbols = {
        {u"Length.cnv", {u"m", u"km", u"cm", u"mm", u"in", u"ft", u"yd", u"mi", u"nmi"}},
        {u"Weight.cnv", {u"kg", u"g", u"mg", u"lb", u"oz", u"st", u"t", u"ct"}},
        {u"Currency.cnv", {u"EUR", u"USD", u"GBP", u"JPY", u"CHF", u"CAD", u"AUD", u"CNY"}},
        {u"Area.cnv", {u"m2", u"km2", u"ha", u"ft2", u"ac", u"mi2"}},
        {u"Volume.cnv", {u"L", u"mL", u"m3", u"gal", u"qt", u"pt", u"floz", u"in3", u"ft3"}},
        {u"Cooking.cnv", {u"cup", u"tbsp", u"tsp", u"floz", u"mL"}},
        {u"Temperature.cnv", {u"C", u"F", u"K"}},
        {u"Speed.cnv", {u"km/h", u"mph", u"m/s", u"ft/s", u"kn"}},
        {u"Time.cnv", {u"s", u"min", u"h", u"d", u"ms"}},
        {u"Pressure.cnv", {u"Pa", u"kPa", u"bar", u"psi", u"atm", u"mmHg"}},
        {u"Energy.cnv", {u"J", u"kJ", u"kWh", u"cal", u"kcal", u"Btu", u"eV"}},
        {u"Power.cnv", {u"W", u"kW", u"hp"}},
        {u"Force.cnv", {u"N", u"kN", u"lbf", u"kgf"}},
        {u"Angle.cnv", {u"deg", u"rad", u"grad", u"turn"}},
        {u"DataStorage.cnv", {u"B", u"kB", u"MB", u"GB", u"KiB", u"MiB", u"GiB", u"bit"}},
        {u"DataRate.cnv", {u"bit/s", u"kbit/s", u"Mbit/s", u"MB/s"}},
        {u"FuelEconomy.cnv", {u"L/100km", u"mpg", u"km/L"}},
        {u"Frequency.cnv", {u"Hz", u"kHz", u"MHz", u"GHz", u"rpm"}},
        {u"ComputerBase.cnv", {u"dec", u"hex", u"oct", u"bin"}},
        {u"TimeZones.cnv", {u"UTC", u"London", u"Tokyo", u"Sydney"}},
    };
    for (const auto& [name, identifiers] : symbols) {
        DataFile file(name);
        for (const CVelmString& identifier : identifiers) {
            EXPECT_NO_THROW(file.Item(identifier)) << ToUtf8(name);
        }
    }
}

}  // namespace
}  // namespace velm::test
