#include "listview/format_menu.h"

#include "formats/format_table.h"
#include "formats/value_format.h"
#include "platform/wide_text_win32.h"
#include "ui/gdi.h"

namespace velm {
int FormatIcon(std::uint32_t displayFormat) {
    const FormatKind* const format = FindFormat(displayFormat);
    return format == nullptr ? -1 : static_cast<int>(format - Formats().data());
}

std::uint32_t ShowFormatMenu(HWND owner, POINT place, const CVelmValueFormat& format) {
    const CVelmMenu menu(CreatePopupMenu());
    for (const FormatKind& kind : Formats()) {
        if ((format.allowedFormats & kind.code) != 0) {
            const UINT check = format.displayFormat == kind.code ? MF_CHECKED : MF_UNCHECKED;
            AppendMenuW(menu.get(), MF_STRING | check, kind.code, Wide(kind.menuText));
        }
    }
    AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu.get(), MF_STRING, CUSTOMIZE_FORMATS, L"Customize...");
    return static_cast<std::uint32_t>(TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD,
                                                     static_cast<int>(place.x), static_cast<int>(place.y), 0, owner,
                                                     nullptr));
}

}  // namespace velm
