#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "data/data_file.h"
#include "datetime/date_time.h"

namespace velm::test {
namespace {

/// Values of the first unit from which every other unit of a file has a value.
std::vector<double> SampleValues(const CVelmString& fileName, const CVelmItem& first) {
    if (first.format.displayFormat == FMT_DATETIME) {
        return {DateTime::FromFields(2026, 1, 15, 12).value, DateTime::FromFields(2026, 7, 15, 12).value};
    }
    return fileName == u"Temperature.cnv" ? std::vector<double>{126.2, 141.0} : std::vector<double>{26.2, 41.0};
}

/// The values of the list. A calculation in which nothing is typed yet shows no errors, whatever its hidden steps give.
std::vector<double> Values(const CVelmDocument& document) {
    std::vector<double> values;
    for (const auto& item : document.items) {
        EXPECT_TRUE(item->shown == 0 || item->state == STATE_VALID) << ToUtf8(item->name);
        values.push_back(item->shown == 0 ? 0.0 : item->value);
    }
    return values;
}

/// Shoe sizes are halves, so a way there and back may end at the next one.
double Tolerance(const CVelmString& fileName) {
    return fileName == u"ShoeSizes.cnv" ? 0.1 : 1e-13;
}

/// The formulas call trigonometric functions, whose angle unit is the user's choice.
void ExpectSameInEveryAngleMode(DataFile& file) {
    file->Recalculate(file.Context());
    const std::vector<double> expected = Values(*file);
    for (int mode = 0; mode < 3; ++mode) {
        CycleAngleMode(file.Context());
        file->Recalculate(file.Context());
        const std::vector<double> values = Values(*file);
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_NEAR(values[i], expected[i], 1e-14 * std::abs(expected[i])) << ToUtf8(file->GetItem(i)->name);
        }
    }
}

TEST(EveryFile, LoadsWholeAndNamesEverything) {
    for (const std::int32_t kind : {KIND_CONVERSION, KIND_CALCULATION}) {
        for (const CVelmString& name : DataFileNames(kind)) {
            SCOPED_TRACE(ToUtf8(name));
            DataFile file(name);
            EXPECT_EQ(file->droppedRecords, 0);
            std::set<CVelmString> identifiers = {u""};
            std::set<CVelmString> names = {u""};
            std::size_t shown = 0;
            for (const auto& item : file->items) {
                EXPECT_TRUE(names.insert(item->name).second) << "empty or twice: " << ToUtf8(item->name);
                EXPECT_TRUE(identifiers.insert(ToLowerAscii(item->identifier)).second) << ToUtf8(item->identifier);
                EXPECT_NE(item->format.displayFormat & item->format.allowedFormats, 0U);
                shown += item->shown == 1 ? 1 : 0;
            }
            EXPECT_GT(2 * shown, file->ItemCount());
            if (kind == KIND_CALCULATION) {
                ExpectSameInEveryAngleMode(file);
            }
        }
    }
}

TEST(EveryFile, ConvertsEveryUnitToEveryOtherAndBackByOneRouteOnly) {
    for (const CVelmString& name : DataFileNames(KIND_CONVERSION)) {
        DataFile file(name);
        const auto& conversions = dynamic_cast<CVelmConversionDoc&>(*file).conversions;
        // With a second route, a value would depend on which of the two the search takes first.
        EXPECT_EQ(conversions.size() + 1, file->ItemCount()) << ToUtf8(name);
        for (const double sample : SampleValues(name, *file->GetItem(0))) {
            SCOPED_TRACE(ToUtf8(name) + " " + std::to_string(sample));
            file.Enter(*file->GetItem(0), sample);
            ExpectSameInEveryAngleMode(file);
            const std::vector<double> expected = Values(*file);
            for (std::size_t from = 0; from < expected.size(); ++from) {
                file.Enter(*file->GetItem(from), expected[from]);
                const std::vector<double> values = Values(*file);
                for (std::size_t to = 0; to < expected.size(); ++to) {
                    EXPECT_NEAR(values[to], expected[to], Tolerance(name) * std::abs(expected[to]))
                        << ToUtf8(file->GetItem(from)->name) << " to " << ToUtf8(file->GetItem(to)->name);
                }
            }
        }
    }
}

}  // namespace
}  // namespace velm::test
