#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/locale.h"
#include "platform/text.h"

namespace velm {

/// Format codes: single bits, so that a set of allowed formats is their union.
constexpr std::uint32_t FMT_DECIMAL = 1;
constexpr std::uint32_t FMT_HEX = 2;
constexpr std::uint32_t FMT_OCTAL = 4;
constexpr std::uint32_t FMT_BINARY = 8;
constexpr std::uint32_t FMT_COMPOUND = 16;
constexpr std::uint32_t FMT_DATE = 32;
constexpr std::uint32_t FMT_DATETIME = 128;
constexpr std::uint32_t FMT_CURRENCY = 256;

class CVelmValueFormat;

/// One way of writing a value.
struct FormatKind {
    std::uint32_t code;
    std::string_view word;     ///< at the terminal, in text sources and in the name of its icon
    const char16_t* menuText;  ///< the user's choice of what is shown
    const char16_t* tabText;   ///< the user's choice of what is typed
    const char16_t* keyText;   ///< the choice of what the calculator shows; empty for a format that it does not offer
    std::uint32_t typedAs;     ///< the format whose tab serves this one too where both are allowed; 0 for none
    unsigned digitBits;        ///< bits of a digit in a number base; 0 for other formats
    char16_t radixSuffix;      ///< what formulas know the base by, which is not typed; 0 for other formats

    /// Writes a value, grouped for showing or plain for typing.
    CVelmString (*write)(double value, bool grouped);

    /// Writes a value for showing by the item's compound parts or the user's region; null where `write` does it.
    CVelmString (*show)(const CVelmValueFormat& format, double value, const CVelmLocale& locale);

    /// Whether an item that allows a set of formats has a tab of its own for this one.
    bool HasTab(std::uint32_t allowed) const { return (allowed & code) != 0 && (allowed & typedAs) == 0; }
};

/// Every format, in the order of menus, tabs and icons.
std::span<const FormatKind> Formats();

/// The format of a code or a word; null when there is none.
const FormatKind* FindFormat(std::uint32_t code);
const FormatKind* FindFormat(std::string_view word);

/// The format that a code shows and types values in: the decimal one for a code that is none.
const FormatKind& FormatOf(std::uint32_t code);

/// The words of all formats.
std::vector<std::string> FormatWords();

/// The words of the formats that an item allows, behind that of the one which it is shown in.
std::vector<std::string> FormatWords(const CVelmValueFormat& item);

/// Makes a text as it is typed in a format the text of a value: "ff" in FMT_HEX becomes 0ffh. An empty one stays empty.
void CompleteTyped(CVelmString& text, std::uint32_t code);

}  // namespace velm
