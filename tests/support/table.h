#pragma once

#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace velm::test {

/// The rows of a table in a text file, with cells between " ->" or what else `separator` is. Blanks around a cell do
/// not count; a line that begins with "# " is a remark. Throws when there are none.
std::vector<std::vector<std::string>> ReadTable(const std::string& path, const std::string& separator = " ->");

/// The parts of a text without the blanks around them; at least one.
std::vector<std::string> Split(const std::string& text, const std::string& separator);

/// The texts with the separator between them.
std::string Join(const std::vector<std::string>& texts, const std::string& separator = ", ");

/// The text with every `from` in it replaced.
std::string Replaced(std::string text, const std::string& from, const std::string& to);

/// What a map has under a name. Throws, with the name, when there is nothing.
template <typename Map>
const auto& ValueOf(const Map& map, const std::string& name) {
    const auto found = map.find(name);
    return found == map.end() ? throw std::runtime_error("there is no \"" + name + "\"") : found->second;
}

/// What printf would write.
template <typename... Values>
std::string Print(const char* format, Values... values) {
    std::array<char, 100> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

}  // namespace velm::test
