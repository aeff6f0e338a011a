#include <gtest/gtest.h>

#include "data/data_file.h"

namespace velm::test {
namespace {

struct Conversion {
    CVelmString file;
    CVelmString from;
    CVelmString typed;
    CVelmString to;
    std::string shown;
};

TEST(Values, ShowAsTheirUnitsAreWritten) {
    const std::vector<Conversion> conversions = {
        {u"Length.cnv", u"ft", u"[5 3]", u"in", "63"},
        {u"Length.cnv", u"in", u"63", u"ftin", "5 ft 3 in "},
        {u"Length.cnv", u"mi", u"26.2", u"km", "42.1648128"},
        {u"Weight.cnv", u"lb", u"[8 6]", u"oz", "134"},
        {u"Weight.cnv", u"oz", u"134", u"lboz", "8 lb 6 oz "},
        {u"Time.cnv", u"s", u"[1 2 5]", u"min", "62.0833333333"},
        {u"Time.cnv", u"min", u"61", u"hms", "1 h 1 min 0 s "},
        {u"Angle.cnv", u"deg", u"[12 30 0]", u"rad", "0.2181661565"},
        {u"Angle.cnv", u"deg", u"5.1", u"dms", "5 \u00B0 6 ' 0 \" "},
        {u"Speed.cnv", u"km/h", u"12", u"min/km", "5 min 0 s "},
        {u"ComputerBase.cnv", u"dec", u"255", u"hex", "00FF"},
        {u"ComputerBase.cnv", u"hex", u"0ffh", u"bin", "1111 1111"},
        {u"ComputerBase.cnv", u"bin", u"1000b", u"oct", "0010"},
        {u"Currency.cnv", u"EUR", u"1000", u"USD", "1,038.90"},
        {u"Currency.cnv", u"EUR", u"1/3", u"EUR", "0.33"},
        {u"Currency.cnv", u"DEM", u"195583", u"EUR", "100,000.00"},
        {u"Temperature.cnv", u"C", u"100", u"F", "212"},
        {u"Temperature.cnv", u"F", u"-40", u"C", "-40"},
        {u"Temperature.cnv", u"K", u"0", u"C", "-273.15"},
        {u"FuelEconomy.cnv", u"mpg", u"30", u"L/100km", "7.84048611111"},
        {u"ShoeSizes.cnv", u"mm", u"260", u"EU", "41"},
        {u"ShoeSizes.cnv", u"in", u"10", u"US_men", "8"},
        {u"Power.cnv", u"W", u"1", u"dBm", "30"},
        {u"Angle.cnv", u"deg", u"45", u"slope", "100"},
        {u"Pressure.cnv", u"atm", u"1", u"psi", "14.6959487755"},
        {u"Illuminance.cnv", u"EV", u"15", u"lx", "81,920"},
        {u"TimeZones.cnv", u"UTC", u"{20260115}+0.5", u"ET", "Thu 1/15/2026 7:00:00"},
        {u"TimeZones.cnv", u"UTC", u"{20260715}+0.5", u"ET", "Wed 7/15/2026 8:00:00"},
        {u"TimeZones.cnv", u"Tokyo", u"{20260716}+1/8", u"London", "Wed 7/15/2026 19:00:00"},
        {u"TimeZones.cnv", u"UTC", u"{20260715}+0.5", u"Moscow", "Wed 7/15/2026 15:00:00"},
    };
    for (const Conversion& conversion : conversions) {
        DataFile file(conversion.file);
        file.ShowAll();
        file.Type(conversion.from, conversion.typed);
        EXPECT_EQ(file.Shown(conversion.to), conversion.shown)
            << ToUtf8(conversion.typed) << " " << ToUtf8(conversion.from) << " to " << ToUtf8(conversion.to);
    }
}

// The formulas call trigonometric functions, whose angle unit is the user's choice.
TEST(Values, DoNotDependOnTheAngleMode) {
    for (const auto& [name, from, typed, to, shown] : {
             Conversion{u"Angle.cnv", u"slope", u"100", u"deg", "45"},
             Conversion{u"Triangle.cal", u"a", u"3", u"gamma", "90"},
         }) {
        DataFile file(name);
        for (int mode = 0; mode < 3; ++mode) {
            file.Type(from, typed);
            EXPECT_EQ(file.Shown(to), shown) << ToUtf8(AngleModeLabel(file.Context()));
            CycleAngleMode(file.Context());
        }
    }
}

struct Calculation {
    CVelmString file;
    std::vector<std::pair<CVelmString, CVelmString>> inputs;
    std::vector<std::pair<CVelmString, std::string>> outputs;
};

TEST(Values, AreCalculated) {
    const std::vector<Calculation> calculations = {
        {u"TipCalc.cal",
         {{u"bill", u"100"}, {u"percent", u"18"}, {u"people", u"4"}},
         {{u"tip", "18.00"}, {u"total", "118.00"}, {u"each", "29.50"}, {u"each_up", "30.00"}}},
        {u"TipCalc.cal", {{u"people", u"0"}}, {{u"total", "46.00"}, {u"each", "Error"}}},
        {u"LoanPayment.cal",
         {{u"principal", u"200000"}, {u"rate", u"5"}, {u"years", u"30"}, {u"elapsed", u"30"}},
         {{u"payment", "1,073.64"}, {u"total", "386,511.57"}, {u"interest", "186,511.57"}, {u"balance", "0.00"}}},
        {u"LoanPayment.cal",
         {{u"principal", u"1200"}, {u"rate", u"0"}, {u"years", u"1"}, {u"elapsed", u"0.5"}},
         {{u"payment", "100.00"}, {u"balance", "600.00"}}},
        {u"LoanPayment.cal", {{u"years", u"0"}}, {{u"payment", "Error"}, {u"balance", "Error"}}},
        {u"CompoundInterest.cal",
         {{u"principal", u"1000"}, {u"rate", u"5"}, {u"periods", u"12"}, {u"years", u"10"}},
         {{u"balance", "1,647.01"}, {u"interest", "647.01"}, {u"effective", "5.11618978817"}}},
        {u"CompoundInterest.cal",
         {{u"principal", u"0"}, {u"deposit", u"100"}, {u"rate", u"0"}, {u"years", u"2"}},
         {{u"balance", "2,400.00"}, {u"doubling", "Error"}}},
        {u"DiscountAndTax.cal",
         {{u"price", u"50"}, {u"quantity", u"3"}, {u"discount", u"10"}, {u"tax", u"8"}},
         {{u"saved", "15.00"}, {u"subtotal", "135.00"}, {u"tax_due", "10.80"}, {u"total", "145.80"}}},
        {u"BodyMassIndex.cal", {{u"lb", u"154.5"}, {u"ft", u"[5 9]"}}, {{u"bmi", "22.8154274426"}, {u"over", "0"}}},
        {u"BodyMassIndex.cal", {{u"kg", u"100"}, {u"cm", u"200"}}, {{u"bmi", "25"}, {u"high_kg", "100"}}},
        {u"DateDifference.cal",
         {{u"first", u"{20260105}"}, {u"last", u"{20260119}"}, {u"number", u"7"}},
         {{u"days", "14"}, {u"weeks", "2 wk 0 d "}, {u"workdays", "10"}, {u"later", "Mon 1/12/2026"}}},
        {u"DateDifference.cal",
         {{u"first", u"{20260109}"}, {u"last", u"{20260112}"}},
         {{u"days", "3"}, {u"workdays", "1"}}},
        {u"OhmsLaw.cal",
         {{u"v", u"12"}, {u"r", u"4"}},
         {{u"current", "3"}, {u"power", "36"}, {u"voltage", "12"}, {u"resistance", "4"}}},
        {u"OhmsLaw.cal", {{u"v", u"0"}, {u"r", u"4"}, {u"p", u"36"}}, {{u"voltage", "12"}, {u"current", "3"}}},
        {u"OhmsLaw.cal",
         {{u"v", u"0"}, {u"r", u"0"}, {u"i", u"3"}, {u"p", u"36"}},
         {{u"voltage", "12"}, {u"resistance", "4"}}},
        {u"OhmsLaw.cal", {{u"r", u"0"}}, {{u"voltage", "12"}, {u"current", "Error"}, {u"power", "Error"}}},
        {u"Circle.cal",
         {{u"r", u"0"}, {u"a", u"4*pi"}, {u"angle", u"180"}},
         {{u"radius", "2"}, {u"diameter", "4"}, {u"arc", "6.28318530718"}, {u"volume", "33.5103216383"}}},
        {u"Triangle.cal",
         {{u"a", u"5"}, {u"b", u"12"}, {u"c", u"13"}},
         {{u"area", "30"}, {u"perimeter", "30"}, {u"gamma", "90"}, {u"inradius", "2"}, {u"circumradius", "6.5"}}},
        {u"Triangle.cal", {{u"c", u"8"}}, {{u"area", "Error"}, {u"alpha", "Error"}}},
        {u"FuelCost.cal",
         {{u"km", u"200"}, {u"use", u"5"}, {u"price", u"1.8"}, {u"people", u"2"}},
         {{u"liters", "10"}, {u"cost", "18.00"}, {u"each", "9.00"}, {u"cost_km", "0.09"}}},
        {u"FuelCost.cal",
         {{u"mi", u"300"}, {u"mpg", u"30"}, {u"price_gal", u"3.5"}},
         {{u"gallons", "10"}, {u"cost", "35.00"}}},
        {u"Pace.cal",
         {{u"km", u"10"}, {u"time_taken", u"[0 50 0]"}},
         {{u"pace_km", "5 min 0 s "},
          {u"kmh", "12"},
          {u"ten", "0 h 50 min 0 s "},
          {u"marathon", "3 h 50 min 0.598 s "},
          {u"mph", "7.45645430685"}}},
    };
    for (const Calculation& calculation : calculations) {
        DataFile file(calculation.file);
        for (const auto& [id, typed] : calculation.inputs) {
            file.Type(id, typed);
        }
        for (const auto& [id, shown] : calculation.outputs) {
            EXPECT_EQ(file.Shown(id), shown)
                << ToUtf8(calculation.file) << " " << ToUtf8(calculation.inputs[0].second) << ": " << ToUtf8(id);
        }
    }
}

}  // namespace
}  // namespace velm::test
