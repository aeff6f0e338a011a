#include "listview/format_menu.h"

#include <array>

#include "formats/value_format.h"
#include "ui/gdi.h"

namespace velm {
namespace {

struct MenuFormat {
    std::uint32_t code;
    const wchar_t* text;
};

// In the order of the menu and of the icons in the strip.
constexpr std::array MENU_FORMATS = {
    MenuFormat{FMT_DECIMAL, L"Default (decimal)"},
    MenuFormat{FMT_CURRENCY, L"Currency"},
    MenuFormat{FMT_HEX, L"Hexadecimal"},
    MenuFormat{FMT_OCTAL, L"Octal"},
    MenuFormat{FMT_BINARY, L"Binary"},
    MenuFormat{FMT_DATE, L"Date"},
    MenuFormat{FMT_DATETIME, L"Date Time"},
    MenuFormat{FMT_COMPOUND, L"Compound"},
};

constexpr int FIRST_FORMAT_ID = 1;
constexpr int CUSTOMIZE_ID = 100;

}  // namespace

int FormatIcon(std::uint32_t displayFormat) {
    for (std::size_t i = 0; i < MENU_FORMATS.size(); ++i) {
        if (MENU_FORMATS[i].code == displayFormat) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

FormatChoice ShowFormatMenu(HWND owner, POINT place, const CVelmValueFormat& format, std::uint32_t& code) {
    const CVelmMenu menu(CreatePopupMenu());
    for (std::size_t i = 0; i < MENU_FORMATS.size(); ++i) {
        if ((format.allowedFormats & MENU_FORMATS[i].code) != 0) {
            const UINT check = format.displayFormat == MENU_FORMATS[i].code ? MF_CHECKED : MF_UNCHECKED;
            AppendMenuW(menu.get(), MF_STRING | check, FIRST_FORMAT_ID + i, MENU_FORMATS[i].text);
        }
    }
    AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu.get(), MF_STRING, CUSTOMIZE_ID, L"Customize...");
    const int chosen = TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD,
                                      static_cast<int>(place.x), static_cast<int>(place.y), 0, owner, nullptr);
    if (chosen == CUSTOMIZE_ID) {
        return FormatChoice::Customize;
    }
    if (chosen < FIRST_FORMAT_ID) {
        return FormatChoice::None;
    }
    code = MENU_FORMATS[static_cast<std::size_t>(chosen - FIRST_FORMAT_ID)].code;
    return FormatChoice::Format;
}

}  // namespace velm
