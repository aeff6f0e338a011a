#include "support/dialogs.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <map>

#include "platform/wide_text_win32.h"
#include "support/popups.h"
#include "support/table.h"

namespace velm::test {
namespace {

bool IsListView(HWND control) {
    return ClassOf(control) == WC_LISTVIEWA;
}

std::string RowText(HWND list, int row, int column) {
    std::array<wchar_t, 256> text{};
    ListView_GetItemText(list, row, column, text.data(), static_cast<int>(text.size()));
    return ToUtf8(FromWide(text.data()));
}

}  // namespace

int IdOf(const std::string& name) {
    static const std::map<std::string, int> NUMBERS = [] {
        std::map<std::string, int> numbers = {{"OK", IDOK}, {"CANCEL", IDCANCEL}, {"YES", IDYES}, {"NO", IDNO}};
        std::ifstream header(VELMORA_RESOURCES);
        for (std::string define, key, value; header >> define;) {
            if (define == "#define" && header >> key >> value && (key.starts_with("ID_") || key.starts_with("IDC_"))) {
                numbers[key.substr(key.find('_') + 1)] = std::stoi(value, nullptr, 0);
            }
        }
        return numbers;
    }();
    const std::size_t plus = name.find('+');
    return ValueOf(NUMBERS, name.substr(0, plus)) + (plus == std::string::npos ? 0 : std::stoi(name.substr(plus)));
}

void Choose(HWND control, const std::string& text) {
    const Texts entries = Entries(control);
    const auto named = std::ranges::find(entries, text);
    const int entry = named != entries.end() ? static_cast<int>(named - entries.begin()) : std::stoi(text);
    if (IsListView(control)) {
        ListView_SetItemState(control, entry, LVIS_SELECTED | LVIS_FOCUSED, ~0U);
        return;
    }
    const bool isList = ClassOf(control) == WC_LISTBOXA;
    SendMessageW(control, isList ? LB_SETCURSEL : CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
    SendMessageW(GetParent(control), WM_COMMAND,
                 MAKEWPARAM(GetDlgCtrlID(control), isList ? LBN_SELCHANGE : CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(control));
}

Texts Entries(HWND control) {
    Texts entries;
    if (IsListView(control)) {
        for (int row = 0; row < ListView_GetItemCount(control); ++row) {
            const std::string second = RowText(control, row, 1);
            entries.push_back((ListView_GetCheckState(control, row) == 1 ? "*" : "") + RowText(control, row, 0) +
                              (second.empty() ? "" : " ") + second);
        }
        return entries;
    }
    const bool isList = ClassOf(control) == WC_LISTBOXA;
    for (WPARAM i = 0; i < static_cast<WPARAM>(SendMessageW(control, isList ? LB_GETCOUNT : CB_GETCOUNT, 0, 0)); ++i) {
        std::array<wchar_t, 256> text{};
        SendMessageW(control, isList ? LB_GETTEXT : CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
        entries.push_back(ToUtf8(FromWide(text.data())));
    }
    return entries;
}

void Tick(HWND control, int row) {
    if (IsListView(control)) {
        ListView_SetCheckState(control, row, ListView_GetCheckState(control, row) != 1);
    } else {
        SendMessageW(control, BM_CLICK, 0, 0);
    }
}

RECT PlaceOfEntry(HWND list, int row) {
    RECT area{};
    ListView_GetItemRect(list, row, &area, LVIR_LABEL);
    return area;
}

RECT PlaceOfColumn(HWND list, int column) {
    RECT area{};
    Header_GetItemRect(ListView_GetHeader(list), column, &area);
    return area;
}

}  // namespace velm::test
