#include "support/dialog_driver.h"

#include <gtest/gtest.h>

#include <array>

#include "app/wide_text.h"
#include "pocketpc/command_bar.h"
#include "support/waiting.h"

namespace velm::test {

DialogDriver::DialogDriver(RunningProgram& program, WORD command) : program_(program), window_(nullptr) {
    program.Command(command);
    window_ = program.WaitForDialog();
    EXPECT_NE(window_, nullptr) << "no dialog for command " << command;
    program.Settle();
}

std::string DialogDriver::Caption() const {
    return ToUtf8(WindowText(window_));
}

std::string DialogDriver::Text(int id) const {
    return ToUtf8(WindowText(Control(id)));
}

void DialogDriver::SetText(int id, std::string_view text) const {
    SendMessageW(Control(id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Wide(FromUtf8(text))));
}

void DialogDriver::Choose(int id, int entry) const {
    std::array<wchar_t, 16> name{};
    GetClassNameW(Control(id), name.data(), static_cast<int>(name.size()));
    const bool isList = lstrcmpiW(name.data(), L"ListBox") == 0;
    SendMessageW(Control(id), isList ? LB_SETCURSEL : CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
    SendMessageW(window_, WM_COMMAND, MAKEWPARAM(id, isList ? LBN_SELCHANGE : CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(Control(id)));
}

std::vector<std::string> DialogDriver::Entries(int id) const {
    std::array<wchar_t, 16> name{};
    GetClassNameW(Control(id), name.data(), static_cast<int>(name.size()));
    const bool isList = lstrcmpiW(name.data(), L"ListBox") == 0;
    const LRESULT count = SendMessageW(Control(id), isList ? LB_GETCOUNT : CB_GETCOUNT, 0, 0);
    std::vector<std::string> entries;
    for (LRESULT i = 0; i < count; ++i) {
        std::array<wchar_t, 256> text{};
        SendMessageW(Control(id), isList ? LB_GETTEXT : CB_GETLBTEXT, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(text.data()));
        entries.push_back(ToUtf8(FromWide(text.data())));
    }
    return entries;
}

void DialogDriver::Focus(int id) const {
    SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id)), TRUE);
}

bool DialogDriver::GetsFocus(int id) const {
    return WaitUntil([this, id] { return program_.Focus() == Control(id); });
}

std::vector<std::string> DialogDriver::MenuBar() const {
    std::vector<std::string> titles;
    program_.Ask([&](CVelmFrame&) {
        const HMENU menu = CommandBar_GetMenu(FindWindowExW(window_, nullptr, L"VlCommandBar", nullptr));
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            std::array<wchar_t, 64> text{};
            GetMenuStringW(menu, static_cast<UINT>(i), text.data(), static_cast<int>(text.size()), MF_BYPOSITION);
            titles.push_back(ToUtf8(FromWide(text.data())));
        }
    });
    return titles;
}

void DialogDriver::Command(WORD id) const {
    const HWND bar = FindWindowExW(window_, nullptr, L"VlCommandBar", nullptr);
    PostMessageW(bar, WM_COMMAND, id, 0);
}

bool DialogDriver::IsGone() const {
    return WaitUntil([this] { return !IsWindow(window_); });
}

bool DialogDriver::Leave(WORD command) const {
    Command(command);
    const bool gone = IsGone();
    if (gone) {
        program_.Settle();
    }
    return gone;
}

std::string DialogDriver::Answer(WORD command, int button) const {
    Command(command);
    HWND box = nullptr;
    if (!WaitUntil([&] {
            box = program_.WaitForDialog();
            return box != window_ || !IsWindow(window_);
        }) ||
        !IsWindow(window_)) {
        return {};
    }
    const OpenMessageBox message(box);
    const std::string text = message.Caption() + ": " + message.Text();
    EXPECT_TRUE(message.Press(button)) << text;
    program_.Settle();
    return text;
}

int DialogDriver::RowCount(int id) const {
    return static_cast<int>(SendMessageW(Control(id), LVM_GETITEMCOUNT, 0, 0));
}

std::string DialogDriver::RowText(int id, int row, int column) const {
    std::array<wchar_t, 256> text{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    SendMessageW(Control(id), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return ToUtf8(FromWide(text.data()));
}

void DialogDriver::TapRow(int id, int row) const {
    RECT area{};
    area.left = LVIR_LABEL;
    SendMessageW(Control(id), LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area));
    program_.Tap(Control(id), static_cast<int>(area.left) + 3, static_cast<int>(area.top + area.bottom) / 2);
}

void DialogDriver::SelectRow(int id, int row) const {
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    item.state = item.stateMask;
    SendMessageW(Control(id), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

bool DialogDriver::IsTicked(int id, int row) const {
    return SendMessageW(Control(id), LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK) ==
           INDEXTOSTATEIMAGEMASK(2);
}

void DialogDriver::TickRow(int id, int row, bool on) const {
    LVITEMW item{};
    item.stateMask = LVIS_STATEIMAGEMASK;
    item.state = INDEXTOSTATEIMAGEMASK(on ? 2U : 1U);
    SendMessageW(Control(id), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

}  // namespace velm::test
