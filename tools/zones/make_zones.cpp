#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <fstream>

#include "datetime/date_time.h"
#include "formats/date_format.h"
#include "zone_check.h"
#include "zone_history.h"
#include "zone_source.h"

namespace velm::zones {
namespace {

std::vector<std::string> FindFaultsOf(const std::map<std::string, ZoneFormulas>& formulas) {
    std::vector<ZoneCase> cases;
    cases.reserve(formulas.size());
    for (const auto& [zone, formula] : formulas) {
        cases.push_back({zone, formula.forward, formula.reverse});
    }
    return FindFaults(cases, SystemClock());
}

/// Writes the source `file` for the places of a table. Nothing is written when a formula is wrong.
int MakeZones(const char* table, const char* file) {
    const CVelmString now = FormatDate(DateTime::Now(SystemClock()).value, true, SystemLocale());
    const std::vector<Place> places = ReadPlaces(table);
    const auto formulas = MakeAllFormulas(places);
    if (const std::vector<std::string> faults = FindFaultsOf(formulas); !faults.empty()) {
        fmt::print(stderr, "{}\n", fmt::join(faults, "\n"));
        return 1;
    }
    std::ofstream output(file, std::ios::binary);
    output << WriteSource(places, formulas, DatabaseVersion(), ToUtf8(now));
    output.close();
    fmt::print("{}: {} places in {} zones, release {}\n", file, places.size(), formulas.size(), DatabaseVersion());
    return output ? 0 : 1;
}

}  // namespace
}  // namespace velm::zones

int main(int count, char** arguments) {
    if (count != 3) {
        std::fputs("usage: make_zones PLACES FILE.toml\n", stderr);
        return 2;
    }
    try {
        return velm::zones::MakeZones(arguments[1], arguments[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
