#include <gtest/gtest.h>

#include <cmath>

#include "data/data_file.h"
#include "data/exact_units.h"

namespace velm::test {
namespace {

TEST(ExactUnits, AreAllUnitsButMeasuredOnesAndFormulas) {
    for (const ExactFile& exact : ExactFiles()) {
        DataFile file(exact.name);
        std::set<CVelmString> expected = exact.inexact;
        for (const auto& [id, size] : exact.sizes) {
            expected.insert(id);
        }
        for (const auto& item : file.Document().items) {
            EXPECT_EQ(expected.erase(item->identifier), 1U) << ToUtf8(exact.name) << " " << ToUtf8(item->identifier);
        }
        EXPECT_TRUE(expected.empty()) << ToUtf8(exact.name) << " lacks " << ToUtf8(*expected.begin());
    }
}

TEST(ExactUnits, ConvertWithinOnePartInTenToTheFifteenth) {
    for (const ExactFile& exact : ExactFiles()) {
        DataFile file(exact.name);
        file.ShowAll();
        for (const auto& [from, fromSize] : exact.sizes) {
            for (const double value : {1.0, 3.0, 26.2, 0.7, 12345.678}) {
                file.Enter(file.Item(from), value);
                for (const auto& [to, toSize] : exact.sizes) {
                    const long double ratio = static_cast<long double>(value) * fromSize / toSize;
                    const long double error = std::abs(file.Item(to).value / ratio - 1);
                    EXPECT_LE(static_cast<double>(error), 1e-15)
                        << ToUtf8(exact.name) << ": " << value << " " << ToUtf8(from) << " to " << ToUtf8(to);
                }
            }
        }
    }
}

TEST(ExactUnits, TurnFuelEconomyRoundExactly) {
    const long double milesPerGallon = EXACT_MILE / EXACT_GALLON * EXACT_LITER / 1000;  // in km/L
    const long double milesPerGallonUk = EXACT_MILE / EXACT_GALLON_UK * EXACT_LITER / 1000;
    const std::map<CVelmString, long double> sizes = {
        {u"km/L", 1.0L}, {u"mpg", milesPerGallon}, {u"mpg_uk", milesPerGallonUk}, {u"mi/L", EXACT_MILE / 1000}};
    DataFile file(u"FuelEconomy.cnv");
    file.ShowAll();
    for (const auto& [from, fromSize] : sizes) {
        for (const double value : {1.0, 29.0, 47.5}) {
            file.Enter(file.Item(from), value);
            const long double kilometersPerLiter = value * fromSize;
            EXPECT_LE(std::abs(file.Item(u"L/100km").value * kilometersPerLiter / 100 - 1), 1e-15L);
            for (const auto& [to, toSize] : sizes) {
                EXPECT_LE(std::abs(file.Item(to).value * toSize / kilometersPerLiter - 1), 1e-15L)
                    << value << " " << ToUtf8(from) << " to " << ToUtf8(to);
            }
        }
    }
}

}  // namespace
}  // namespace velm::test
