#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/text.h"

namespace velm {

/// Appends decimal digits as they are, or with "," every three of them before the point.
void AppendGrouped(CVelmString& text, std::string_view digits, bool grouped);

/// Twelve significant digits, exponents in steps of three. Grouped text has "," every three digits and a space
/// before the exponent. Infinities are "inf" and "-inf", a NaN is "nan"; no formula reads these as numbers.
CVelmString FormatDecimal(double value, bool grouped);

/// The plain form used inside formulas and other texts: as FormatDecimal ungrouped, without an exponent down to
/// 0.000001.
CVelmString NumberToText(double value);

/// The shortest text that reads back as the same double.
std::string ShortestText(double value);

/// The number that a grouped text such as "-1,234.5" shows, without its commas. Nothing for any other text, a number
/// without commas and one whose groups are not of three digits included. Spaces and line ends around it are ignored.
std::optional<CVelmString> UngroupNumber(CVelmStringView text);

}  // namespace velm
