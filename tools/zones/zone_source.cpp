#include "zone_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace velm::zones {
namespace {

constexpr const char* HEAD =
    R"toml(# Made by tools/make-zones from release {0} of the IANA time zone database and tools/zones/cities.txt: change these.
#
# The formulas give the database's time at every second from 2020 to 2040. Beyond that they go on with the rules of the
# nearest year. On the way back from local time, a time that comes twice is the first of the two, and one that is
# left out when clocks are put forward is read as if they had not been put forward yet.
#
# 7*round((x-c)/7)\365.25 is the number of days from 1 March to the latest Sunday (or other weekday) at the hour at which
# clocks are changed; c is such a Sunday a century ago, plus half a week. The number is up to 0.75 too small in three of
# four years, so it is compared with tenths: 23.1 lies between 23 and 24 in all of them. Times are written up to a second
# early, so that rounding does not matter at the time itself.
title = "Time zones"
category = "Everyday"
updated = "{1}"
source = "IANA time zone database, release {0}"
about = [
    "An hour that occurs twice is taken as the first one. An hour that the clocks skip is read as if they had not been changed yet.",
    "Zone codes are those of the functions fromutc and toutc, without their own daylight saving time.",
]

[[item]]
id = "UTC"
name = "Universal time (UTC)"
formats = ["datetime"]
)toml";

constexpr const char* ITEM = R"toml(
[[item]]
id = "{}"
name = "{}"
{}formats = ["datetime"]
)toml";

constexpr const char* CONVERSION = R"toml(
[[conversion]]
from = "UTC"
to = "{}"
forward = '{}'
reverse = '{}'
source = "IANA, {}"
)toml";

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

/// A comment in lines of 120 characters.
std::string Comment(const std::string& text) {
    constexpr std::size_t WIDTH = 118;
    std::string comment;
    std::string rest = text;
    while (rest.size() > WIDTH) {
        const std::size_t end = rest.rfind(' ', WIDTH);
        comment += "# " + rest.substr(0, end) + "\n";
        rest.erase(0, end + 1);
    }
    return comment + "# " + rest + "\n";
}

}  // namespace

std::vector<Place> ReadPlaces(const std::string& path) {
    std::vector<Place> places;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) {
            continue;
        }
        std::vector<std::string> cells;
        for (std::size_t at = 0; at <= line.size();) {
            const std::size_t end = std::min(line.find('|', at), line.size());
            cells.push_back(Trimmed(line.substr(at, end - at)));
            at = end + 1;
        }
        if (cells.size() < 3) {
            throw std::runtime_error(fmt::format("{}: no place: {}", path, line));
        }
        places.push_back({cells[0], cells[1], cells[2], cells.size() > 3});
    }
    return places.empty() ? throw std::runtime_error(path + ": no places") : places;
}

std::map<std::string, ZoneFormulas> MakeAllFormulas(const std::vector<Place>& places) {
    std::map<std::string, ZoneFormulas> formulas;
    std::map<ZoneHistory, ZoneFormulas> known;  // many zones are alike
    for (const Place& place : places) {
        if (!formulas.contains(place.zone)) {
            const ZoneHistory history = ZoneClock(place.zone).History();
            const auto [entry, isNew] = known.try_emplace(history);
            if (isNew) {
                entry->second = MakeFormulas(history);
            }
            formulas[place.zone] = entry->second;
        }
    }
    return formulas;
}

std::string WriteSource(const std::vector<Place>& places, const std::map<std::string, ZoneFormulas>& formulas,
                        const std::string& databaseVersion, const std::string& updated) {
    std::string text = fmt::format(HEAD, databaseVersion, updated);
    for (const Place& place : places) {
        text += fmt::format(ITEM, place.identifier, place.name, place.hidden ? "shown = false\n" : "");
    }

    // Places whose clocks do the same stand together, in the order of the first.
    std::vector<std::string> rules;
    std::map<std::string, std::string> conversions;
    for (const Place& place : places) {
        const auto& [forward, reverse, words] = formulas.at(place.zone);
        if (!conversions.contains(words)) {
            rules.push_back(words);
        }
        conversions[words] += fmt::format(CONVERSION, place.identifier, forward, reverse, place.zone);
    }
    for (const std::string& rule : rules) {
        text += '\n' + Comment(rule) + conversions[rule].substr(1);
    }
    return text;
}

}  // namespace velm::zones
