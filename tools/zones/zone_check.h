#pragma once

#include <string>
#include <vector>

#include "platform/clock.h"

namespace velm::zones {

/// The formulas of a zone, by its name in the IANA database.
struct ZoneCase {
    std::string zone;
    std::string forward;
    std::string reverse;
};

/// Holds formulas against this machine's database at every hour from 2020 to 2040, at the second of every change and
/// the one before it. On the way back from local time, a time that comes twice has to give the first of the two, and
/// one that clocks leave out is read as if they had not been put forward yet. One line for every zone that is wrong.
/// Throws std::runtime_error when the database lacks a zone.
std::vector<std::string> FindFaults(const std::vector<ZoneCase>& cases, const CVelmClock& clock);

}  // namespace velm::zones
