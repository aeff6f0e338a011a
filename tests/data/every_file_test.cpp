#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

#include "data/data_file.h"
#include "datetime/date_time.h"

namespace velm::test {
namespace {

/// Values of the first unit from which every other unit of its kind has a value.
std::vector<double> SampleValues(const CVelmString& name, const CVelmItem& first) {
    if (first.format.displayFormat == FMT_DATETIME) {
        return {DateTime::FromFields(2026, 1, 15, 12).value, DateTime::FromFields(2026, 7, 15, 12).value};
    }
    static const std::map<CVelmStringView, std::vector<double>> BOUNDED = {
        {u"SolidAngle.cnv", {0.262, 4.1}}, {u"SoundPressure.cnv", {62.0, 94.1}}, {u"Temperature.cnv", {126.2, 141.0}}};
    const auto bounded = BOUNDED.find(name);
    return bounded != BOUNDED.end() ? bounded->second : std::vector<double>{26.2, 41.0};
}

using Items = std::vector<CVelmItem*>;

Items AllItems(const CVelmDocument& document) {
    Items items;
    for (const auto& item : document.items) {
        items.push_back(item.get());
    }
    return items;
}

/// The units that conversions join, group by group, the first of the file in front.
std::vector<Items> Groups(const CVelmConversionDoc& document) {
    std::map<const CVelmItem*, std::size_t> groupOf;
    std::vector<Items> groups;
    for (CVelmItem* item : AllItems(document)) {
        groupOf[item] = groups.size();
        groups.push_back({item});
    }
    for (const auto& conversion : document.conversions) {
        const auto [kept, joined] = std::minmax({groupOf[conversion->unit1], groupOf[conversion->unit2]});
        if (kept != joined) {
            for (CVelmItem* item : std::exchange(groups[joined], {})) {
                groupOf[item] = kept;
                groups[kept].push_back(item);
            }
        }
    }
    std::erase_if(groups, [](const Items& group) { return group.empty(); });
    return groups;
}

bool HoldsSeveralKinds(const CVelmString& name) {
    return name == u"BloodValues.cnv" || name == u"ClothingSizes.cnv" || name == u"HatSizes.cnv" ||
           name == u"PricePerUnit.cnv" || name == u"VitaminUnits.cnv";
}

/// The values of the list. A calculation in which nothing is typed yet shows no errors, whatever its hidden steps give.
std::vector<double> Values(const Items& items) {
    std::vector<double> values;
    for (const CVelmItem* item : items) {
        EXPECT_TRUE(item->shown == 0 || item->state == STATE_VALID) << ToUtf8(item->name);
        values.push_back(item->shown == 0 ? 0.0 : item->value);
    }
    return values;
}

/// The formulas call trigonometric functions, whose angle unit is the user's choice.
void ExpectSameInEveryAngleMode(DataFile& file, const Items& items) {
    file->Recalculate(file.Context());
    const std::vector<double> expected = Values(items);
    for (int mode = 0; mode < 3; ++mode) {
        CycleAngleMode(file.Context());
        file->Recalculate(file.Context());
        const std::vector<double> values = Values(items);
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_NEAR(values[i], expected[i], 1e-14 * std::abs(expected[i])) << ToUtf8(items[i]->name);
        }
    }
}

/// Values that are rounded to the sizes that are sold do not come back; formulas.txt has theirs, both ways.
bool IsRounded(const CVelmString& name) {
    static const std::set<CVelmStringView> ROUNDED = {
        u"ClothingSizes.cnv", u"DrillSizes.cnv", u"HatSizes.cnv",  u"InchFractions.cnv", u"MusicalNotes.cnv",
        u"RingSizes.cnv",     u"SheetMetal.cnv", u"ShoeSizes.cnv", u"WindSpeed.cnv",     u"WireGauge.cnv"};
    return ROUNDED.contains(name);
}

void ExpectConvertsBack(DataFile& file, const Items& items, double sample) {
    file.Enter(*items.front(), sample);
    ExpectSameInEveryAngleMode(file, items);
    const std::vector<double> expected = Values(items);
    for (std::size_t from = 0; from < items.size(); ++from) {
        file.Enter(*items[from], expected[from]);
        const std::vector<double> values = Values(items);
        for (std::size_t to = 0; to < items.size(); ++to) {
            EXPECT_NEAR(values[to], expected[to], 1e-13 * std::abs(expected[to]))
                << ToUtf8(items[from]->name) << " to " << ToUtf8(items[to]->name);
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
                // Units are told apart by letter case (mV, MV), variables are not.
                const CVelmString& id = item->identifier;
                EXPECT_TRUE(identifiers.insert(kind == KIND_CALCULATION ? ToLowerAscii(id) : id).second) << ToUtf8(id);
                EXPECT_NE(item->format.displayFormat & item->format.allowedFormats, 0U);
                shown += item->shown == 1 ? 1 : 0;
            }
            EXPECT_GT(2 * shown, file->ItemCount());
            if (kind == KIND_CALCULATION) {
                ExpectSameInEveryAngleMode(file, AllItems(*file));
            }
        }
    }
}

TEST(EveryFile, ConvertsEveryUnitToEveryOtherOfItsKindAndBackByOneRouteOnly) {
    for (const CVelmString& name : DataFileNames(KIND_CONVERSION)) {
        DataFile file(name);
        const auto& document = dynamic_cast<CVelmConversionDoc&>(*file);
        const std::vector<Items> groups = Groups(document);
        // With a second route, a value would depend on which of the two the search takes first.
        EXPECT_EQ(document.conversions.size() + groups.size(), file->ItemCount()) << ToUtf8(name);
        EXPECT_EQ(groups.size() > 1, HoldsSeveralKinds(name)) << ToUtf8(name);
        if (IsRounded(name)) {
            continue;
        }
        for (const Items& items : groups) {
            EXPECT_GT(items.size(), 1U) << ToUtf8(items.front()->name);
            for (const double sample : SampleValues(name, *items.front())) {
                SCOPED_TRACE(ToUtf8(name) + " " + std::to_string(sample));
                ExpectConvertsBack(file, items, sample);
            }
        }
    }
}

}  // namespace
}  // namespace velm::test
