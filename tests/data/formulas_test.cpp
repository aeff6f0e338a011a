#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "data/data_file.h"
#include "support/table.h"

namespace velm::test {
namespace {

double Read(DataFile& file, const CVelmItem& item, const std::string& text) {
    double value = 0.0;
    EXPECT_TRUE(item.format.ParseValueText(FromUtf8(text), file.Context(), value)) << text;
    return value;
}

void ExpectConversion(DataFile& file, CVelmItem& from, const std::string& value, const CVelmItem& to,
                      const std::string& expected) {
    SCOPED_TRACE(value + " " + ToUtf8(from.identifier) + " = " + expected + " " + ToUtf8(to.identifier));
    file.Enter(from, Read(file, from, value));
    if (expected == "error") {
        EXPECT_NE(to.state, STATE_VALID) << to.value;
        return;
    }
    const double number = Read(file, to, expected);
    EXPECT_EQ(to.state, STATE_VALID);
    EXPECT_NEAR(to.value, number, 1e-12 * std::max(0.1, std::abs(number)));
}

using UnitsOfFiles = std::set<std::pair<std::string, std::string>>;

/// The units that units.txt has no size for, without those of rates and time zones, which change.
UnitsOfFiles UnitsWithoutSize() {
    UnitsOfFiles units;
    for (const auto& row : ReadTable(VELMORA_TABLES "/units.txt", " |")) {
        if (row.at(2) == "?" && row.at(0) != "Currency" && row.at(0) != "TimeZones") {
            units.emplace(row.at(0), row.at(1));
        }
    }
    return units;
}

TEST(Formulas, GiveTheValuesOfTheirSourcesForEveryUnitThatHasNoSize) {
    UnitsOfFiles missing = UnitsWithoutSize();
    for (const auto& row : ReadTable(VELMORA_TABLES "/formulas.txt", " |")) {
        SCOPED_TRACE(row.at(0));
        DataFile file(FromUtf8(row.at(0) + ".cnv"));
        CVelmItem& from = file.Find(row.at(1));
        CVelmItem& to = file.Find(row.at(2));
        for (const std::string& pair : Split(row.at(3), ",")) {
            const bool oneWay = pair.find('>') != std::string::npos;
            const auto values = Split(pair, oneWay ? ">" : "=");
            ExpectConversion(file, from, values.at(0), to, values.at(1));
            if (!oneWay) {
                ExpectConversion(file, to, values.at(1), from, values.at(0));
            }
        }
        missing.erase({row.at(0), row.at(1)});
        missing.erase({row.at(0), row.at(2)});
    }
    for (const auto& [file, unit] : missing) {
        ADD_FAILURE() << file << " " << unit << " has neither a size in units.txt nor a value in formulas.txt";
    }
}

}  // namespace
}  // namespace velm::test
