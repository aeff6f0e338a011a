#include "support/dialog_driver.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <map>

#include "resource.h"
#include "support/table.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

std::map<std::string, int> ReadNames() {
    std::map<std::string, int> numbers = {{"OK", IDOK}, {"CANCEL", IDCANCEL}, {"YES", IDYES}, {"NO", IDNO}};
    std::ifstream header(VELMORA_RESOURCES);
    for (std::string define, name, value; header >> define;) {
        if (define == "#define" && header >> name >> value && (name.starts_with("ID_") || name.starts_with("IDC_"))) {
            numbers[name.substr(name.find('_') + 1)] = std::stoi(value, nullptr, 0);
        }
    }
    return numbers;
}

}  // namespace

int IdOf(const std::string& name) {
    static const std::map<std::string, int> NUMBERS = ReadNames();
    const std::size_t plus = name.find('+');
    return ValueOf(NUMBERS, name.substr(0, plus)) + (plus == std::string::npos ? 0 : std::stoi(name.substr(plus)));
}

DialogDriver::DialogDriver(RunningProgram& program, int command)
    : DialogDriver(program, (program.Command(command), nullptr)) {}

DialogDriver::DialogDriver(RunningProgram& program, HWND window)
    : program_(program), window_(window != nullptr ? window : program.WaitForDialog()) {
    EXPECT_NE(window_, nullptr) << "no dialog opens";
    EXPECT_TRUE(WaitUntil([this] { return IsChild(window_, program_.Focus()) || program_.Focus() == window_; }));
    program.Settle();
}

DialogDriver DialogDriver::Over(int command) const {
    Command(command);
    return {program_, WaitForDialog(program_.Thread(), window_)};
}

void DialogDriver::Choose(int id, int entry) const {
    const std::string kind = ClassOf(Control(id));
    if (kind == "SysListView32") {
        ListView_SetItemState(Control(id), entry, LVIS_SELECTED | LVIS_FOCUSED, ~0U);
        return;
    }
    const bool isList = kind == "ListBox";
    Send(id, isList ? LB_SETCURSEL : CB_SETCURSEL, static_cast<WPARAM>(entry));
    SendMessageW(window_, WM_COMMAND, MAKEWPARAM(id, isList ? LBN_SELCHANGE : CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(Control(id)));
}

Texts DialogDriver::Entries(int id) const {
    const std::string kind = ClassOf(Control(id));
    Texts entries;
    if (kind == "SysListView32") {
        for (WPARAM row = 0; row < static_cast<WPARAM>(Send(id, LVM_GETITEMCOUNT)); ++row) {
            const bool ticked = ListView_GetCheckState(Control(id), row) == 1;
            const std::string second = RowText(id, row, 1);
            entries.push_back((ticked ? "*" : "") + RowText(id, row, 0) + (second.empty() ? "" : " ") + second);
        }
        return entries;
    }
    const bool isList = kind == "ListBox";
    for (WPARAM i = 0; i < static_cast<WPARAM>(Send(id, isList ? LB_GETCOUNT : CB_GETCOUNT)); ++i) {
        std::array<wchar_t, 256> text{};
        Send(id, isList ? LB_GETTEXT : CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
        entries.push_back(ToUtf8(FromWide(text.data())));
    }
    return entries;
}

std::string DialogDriver::RowText(int id, WPARAM row, int column) const {
    std::array<wchar_t, 256> text{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    Send(id, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    return ToUtf8(FromWide(text.data()));
}

void DialogDriver::Tick(int id, int row) const {
    if (ClassOf(Control(id)) == "Button") {
        Send(id, BM_CLICK);
    } else {
        ListView_SetCheckState(Control(id), row, ListView_GetCheckState(Control(id), row) != 1);
    }
}

RECT DialogDriver::PlaceInList(bool column, int number) const {
    RECT area{LVIR_LABEL, 0, 0, 0};
    if (column) {
        SendMessageW(ListView_GetHeader(Control(IDC_LIST)), HDM_GETITEMRECT, static_cast<WPARAM>(number),
                     reinterpret_cast<LPARAM>(&area));
    } else {
        Send(IDC_LIST, LVM_GETITEMRECT, static_cast<WPARAM>(number), reinterpret_cast<LPARAM>(&area));
    }
    return area;
}

void DialogDriver::Focus(int id) const {
    SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id)), TRUE);
    EXPECT_TRUE(WaitUntil([this, id] { return program_.Focus() == Control(id); }));
}

void DialogDriver::Command(int id) const {
    PostMessageW(FindWindowExW(window_, nullptr, L"VlCommandBar", nullptr), WM_COMMAND, MAKEWPARAM(id, 0), 0);
}

bool DialogDriver::Leave(int command) const {
    Command(command);
    const bool gone = WaitUntil([this] { return !IsWindow(window_); });
    program_.Settle();
    return gone;
}

}  // namespace velm::test
