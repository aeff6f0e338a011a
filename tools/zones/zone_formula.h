#pragma once

#include <string>

#include "zone_history.h"

namespace velm::zones {

/// The way between UTC and a zone's local time as formulas of x, and what its clocks do in words, from 2020 to 2040.
struct ZoneFormulas {
    std::string forward;
    std::string reverse;
    std::string words;
};

ZoneFormulas MakeFormulas(const ZoneHistory& history);

}  // namespace velm::zones
