#pragma once

#include <string>
#include <vector>

namespace velm::test {

/// The rows of a table in a text file, with cells between " ->" or what else `separator` is. Blanks around a cell do
/// not count; a line that begins with "# " is a remark. Throws when there are none.
std::vector<std::vector<std::string>> ReadTable(const std::string& path, const std::string& separator = " ->");

/// The parts of a text without the blanks around them; at least one.
std::vector<std::string> Split(const std::string& text, const std::string& separator);

}  // namespace velm::test
