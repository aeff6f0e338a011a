#pragma once

#include <windows.h>

#include <cstdint>

namespace velm {

class CVelmValueFormat;

/// Position of a display format's icon in the strip of format icons; -1 for a code that is none of the eight.
int FormatIcon(std::uint32_t displayFormat);

/// What was chosen from a format menu.
enum class FormatChoice { None, Format, Customize };

/// Shows the menu of the formats that `format` allows with its top left at a screen position, the current one checked.
/// For FormatChoice::Format the chosen code is in `code`.
FormatChoice ShowFormatMenu(HWND owner, POINT place, const CVelmValueFormat& format, std::uint32_t& code);

}  // namespace velm
