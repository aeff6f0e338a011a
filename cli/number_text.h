#pragma once

#include <string>

namespace velm {

/// As printf's %.17g.
std::string RawText(double value);

/// The shortest text that reads back as the same double.
std::string ShortestText(double value);

}  // namespace velm
