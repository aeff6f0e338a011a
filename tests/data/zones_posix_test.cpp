#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "data/data_file.h"
#include "support/table.h"
#include "zone_check.h"
#include "zone_history.h"
#include "zone_source.h"

namespace velm::test {
namespace {

using namespace velm::zones;

/// The one word or words between two texts.
std::string Between(const std::string& text, const std::string& before, const std::string& after) {
    const std::size_t start = text.find(before) + before.size();
    return text.substr(start, text.find(after, start) - start);
}

class ZonesFile : public testing::Test {
protected:
    ZonesFile() {
        std::ifstream file(VELMORA_ZONES_SOURCE, std::ios::binary);
        source_.assign(std::istreambuf_iterator<char>(file), {});
        release_ = Between(source_, "release ", " ");
        EXPECT_GE(DatabaseVersion(), release_) << "tools/packages.sh asks for a release that is too old";
    }

    const std::vector<Place> places_ = ReadPlaces(VELMORA_PLACES);
    std::string source_;
    std::string release_;
};

TEST_F(ZonesFile, IsRightAtEveryHourFrom2020To2040BothWays) {
    DataFile file(u"TimeZones.cnv");
    ASSERT_EQ(file->ItemCount(), places_.size() + 1);
    const auto& conversions = dynamic_cast<CVelmConversionDoc&>(*file).conversions;
    std::vector<ZoneCase> cases;
    for (const Place& place : places_) {
        const auto conversion = std::ranges::find_if(conversions, [&](const auto& candidate) {
            return candidate->unit1 == file->GetItem(0) && ToUtf8(candidate->unit2->identifier) == place.identifier;
        });
        ASSERT_NE(conversion, conversions.end()) << place.identifier;
        cases.push_back({place.zone, ToUtf8((*conversion)->forwardFormula), ToUtf8((*conversion)->reverseFormula)});
    }
    for (const std::string& fault : FindFaults(cases, FixedClock())) {
        ADD_FAILURE() << fault << "; this machine's database is release " << DatabaseVersion();
    }
}

TEST_F(ZonesFile, IsWhatItsToolWrites) {
    EXPECT_TRUE(source_ ==
                WriteSource(places_, MakeAllFormulas(places_), release_, Between(source_, "updated = \"", "\"")))
        << "run tools/make-zones";
}

/// Offsets in hours in January and July of 2026.
std::set<std::pair<std::int64_t, std::int64_t>> OffsetsOf2026(const std::string& zone) {
    const ZoneClock clock(zone);
    constexpr std::int64_t JANUARY = 20454 * DAY;
    return {{1, clock.OffsetAt(JANUARY)}, {7, clock.OffsetAt(JANUARY + 180 * DAY)}};
}

TEST_F(ZonesFile, HasEveryOffsetThatPeopleLiveBy) {
    std::set<std::pair<std::int64_t, std::int64_t>> known;
    for (const Place& place : places_) {
        known.merge(OffsetsOf2026(place.zone));
    }
    std::set<std::pair<std::int64_t, std::int64_t>> inhabited;
    for (const auto& row : ReadTable("/usr/share/zoneinfo/zone1970.tab", "\t")) {
        if (row.size() > 2 && !row.at(0).starts_with('#') && !row.at(2).starts_with("Antarctica/")) {
            inhabited.merge(OffsetsOf2026(row.at(2)));
        }
    }
    for (const auto& [month, offset] : inhabited) {
        EXPECT_TRUE(known.contains({month, offset})) << offset << " s in month " << month;
    }
    EXPECT_GE(inhabited.size(), 70U);
}

}  // namespace
}  // namespace velm::test
