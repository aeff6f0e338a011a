#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/value_format.h"

namespace velm {

/// A format code and the word for it at the terminal and in text sources.
struct FormatName {
    std::string_view name;
    std::uint32_t code;
};

constexpr std::array<FormatName, 8> FORMAT_NAMES{{{"decimal", FMT_DECIMAL},
                                                  {"currency", FMT_CURRENCY},
                                                  {"hex", FMT_HEX},
                                                  {"octal", FMT_OCTAL},
                                                  {"binary", FMT_BINARY},
                                                  {"compound", FMT_COMPOUND},
                                                  {"date", FMT_DATE},
                                                  {"datetime", FMT_DATETIME}}};

/// The union of all codes.
std::uint32_t AllFormats();
std::optional<std::uint32_t> FormatCode(std::string_view name);

/// Empty for a code that has no name.
std::string_view NameOfFormat(std::uint32_t code);

std::vector<std::string> FormatWords();

/// The names of a format's codes: the one that is shown, then the others that it allows. Codes without a name are
/// left out.
std::vector<std::string_view> NamesOfFormats(const CVelmValueFormat& format);

}  // namespace velm
