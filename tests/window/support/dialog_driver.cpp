#include "support/dialog_driver.h"

#include <gtest/gtest.h>

#include <array>

#include "pocketpc/command_bar.h"
#include "support/waiting.h"

namespace velm::test {

DialogDriver::DialogDriver(RunningProgram& program, int command)
    : DialogDriver(program, (program.Command(command), nullptr)) {}

DialogDriver::DialogDriver(RunningProgram& program, HWND window)
    : program_(program), window_(window != nullptr ? window : program.WaitForDialog()) {
    EXPECT_NE(window_, nullptr) << "no dialog opens";
    EXPECT_TRUE(HasFocus());
    program.Settle();
}

bool DialogDriver::HasFocus() const {
    return WaitUntil([this] { return IsChild(window_, program_.Focus()) || program_.Focus() == window_; });
}

DialogDriver DialogDriver::Over(int command) const {
    Command(command);
    return {program_, WaitForDialog(program_.Thread(), window_)};
}

bool DialogDriver::IsListBox(int id) const {
    std::array<wchar_t, 16> name{};
    GetClassNameW(Control(id), name.data(), static_cast<int>(name.size()));
    return lstrcmpiW(name.data(), L"ListBox") == 0;
}

void DialogDriver::Choose(int id, int entry) const {
    const bool isList = IsListBox(id);
    Send(id, isList ? LB_SETCURSEL : CB_SETCURSEL, static_cast<WPARAM>(entry));
    SendMessageW(window_, WM_COMMAND, MAKEWPARAM(id, isList ? LBN_SELCHANGE : CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(Control(id)));
}

Texts DialogDriver::Entries(int id) const {
    const bool isList = IsListBox(id);
    const auto count = static_cast<WPARAM>(Send(id, isList ? LB_GETCOUNT : CB_GETCOUNT));
    Texts entries;
    for (WPARAM i = 0; i < count; ++i) {
        std::array<wchar_t, 256> text{};
        Send(id, isList ? LB_GETTEXT : CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
        entries.push_back(ToUtf8(FromWide(text.data())));
    }
    return entries;
}

void DialogDriver::Focus(int id) const {
    SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id)), TRUE);
    EXPECT_TRUE(WaitUntil([this, id] { return program_.Focus() == Control(id); }));
}

void DialogDriver::Command(int id) const {
    PostMessageW(FindWindowExW(window_, nullptr, L"VlCommandBar", nullptr), WM_COMMAND, MAKEWPARAM(id, 0), 0);
}

bool DialogDriver::IsGone() const {
    const bool gone = WaitUntil([this] { return !IsWindow(window_); });
    program_.Settle();
    return gone;
}

bool DialogDriver::EndsWith(WORD key) const {
    EXPECT_TRUE(HasFocus());  // it comes back some time after a box over the dialog is closed
    program_.Key(key);
    return IsGone();
}

std::string DialogDriver::RowText(int id, int row, int column) const {
    std::array<wchar_t, 256> text{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    Send(id, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return ToUtf8(FromWide(text.data()));
}

Texts DialogDriver::Rows(int id) const {
    Texts rows;
    for (int row = 0; row < Send(id, LVM_GETITEMCOUNT); ++row) {
        const std::string second = RowText(id, row, 1);
        rows.push_back(RowText(id, row, 0) + (second.empty() ? "" : " ") + second);
    }
    return rows;
}

void DialogDriver::TapRow(int id, int row) const {
    RECT area{};
    area.left = LVIR_LABEL;
    Send(id, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area));
    program_.Tap(Control(id), static_cast<int>(area.left) + 3, static_cast<int>(area.top + area.bottom) / 2);
}

}  // namespace velm::test
