#pragma once

#include <windows.h>

#include <cstdint>

namespace velm {

class CVelmValueFormat;

/// Position of a display format's icon in the strip of format icons; -1 for a code that is none of the eight.
int FormatIcon(std::uint32_t displayFormat);

/// What ShowFormatMenu returns for "Customize...": no format's code.
constexpr std::uint32_t CUSTOMIZE_FORMATS = 0x7FFF;

/// Shows the menu of the formats that `format` allows with its top left at a screen position, the current one checked.
/// Returns the chosen code, or 0 when nothing was chosen.
std::uint32_t ShowFormatMenu(HWND owner, POINT place, const CVelmValueFormat& format);

}  // namespace velm
