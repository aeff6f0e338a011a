#include "listview/format_menu.h"

#include "formats/format_table.h"
#include "formats/value_format.h"
#include "platform/wide_text_win32.h"
#include "ui/gdi.h"

namespace velm {
namespace {

/// No format's code, which the other entries have.
constexpr int CUSTOMIZE_ID = 0x7FFF;

}  // namespace

int FormatIcon(std::uint32_t displayFormat) {
    const FormatKind* const format = FindFormat(displayFormat);
    return format == nullptr ? -1 : static_cast<int>(format - Formats().data());
}

FormatChoice ShowFormatMenu(HWND owner, POINT place, const CVelmValueFormat& format, std::uint32_t& code) {
    const CVelmMenu menu(CreatePopupMenu());
    for (const FormatKind& kind : Formats()) {
        if ((format.allowedFormats & kind.code) != 0) {
            const UINT check = format.displayFormat == kind.code ? MF_CHECKED : MF_UNCHECKED;
            AppendMenuW(menu.get(), MF_STRING | check, kind.code, Wide(kind.menuText));
        }
    }
    AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu.get(), MF_STRING, CUSTOMIZE_ID, L"Customize...");
    const int chosen = TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD,
                                      static_cast<int>(place.x), static_cast<int>(place.y), 0, owner, nullptr);
    if (chosen == CUSTOMIZE_ID) {
        return FormatChoice::Customize;
    }
    code = static_cast<std::uint32_t>(chosen);
    return FindFormat(code) == nullptr ? FormatChoice::None : FormatChoice::Format;
}

}  // namespace velm
