#pragma once

#include <map>
#include <string>
#include <vector>

#include "zone_formula.h"

namespace velm::zones {

/// A place of the data file and its zone in the IANA database.
struct Place {
    std::string identifier;
    std::string name;
    std::string zone;
    bool hidden = false;
};

/// The table of places. Throws std::runtime_error when it cannot be read.
std::vector<Place> ReadPlaces(const std::string& path);

/// The formulas of every zone of the places. Throws std::runtime_error when this machine's database lacks one.
std::map<std::string, ZoneFormulas> MakeAllFormulas(const std::vector<Place>& places);

/// The data file's source. `updated` is its date as the program shows it.
std::string WriteSource(const std::vector<Place>& places, const std::map<std::string, ZoneFormulas>& formulas,
                        const std::string& databaseVersion, const std::string& updated);

}  // namespace velm::zones
