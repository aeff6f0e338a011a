#include "peghelp/help_window.h"

#include <algorithm>

#include "platform/wide_text_win32.h"
#include "ui/display_messages.h"
#include "ui/display_scale.h"
#include "ui/frame_window.h"

namespace velm {
namespace {

void ShowMessageBox(HWND owner, const CVelmString& text) {
    MessageBoxW(owner, Wide(text), L"Help", MB_OK | MB_ICONSTOP);
}

}  // namespace

CVelmHelpWindow::CVelmHelpWindow(const CVelmServices& services, const CVelmString& folder)
    : pages_(services), library_(folder) {
    pages_.ScanReferences(folder);
}

bool CVelmHelpWindow::Open(const HelpTarget& target, int showCommand) {
    if (!library_.Load()) {
        ShowMessageBox(nullptr, u"The help viewer could not be started: htmlview.dll is missing or does not work.");
        return false;
    }
    if (!CreateFrame()) {
        ShowMessageBox(nullptr, u"The help viewer could not be started: its window could not be made.");
        return false;
    }
    // Shown first: a page is laid out and scrolled in the size that it has on the screen.
    RECT area{};
    GetWindowRect(Handle(), &area);
    const bool fits = Width(area) <= GetSystemMetrics(SM_CXSCREEN) && Height(area) <= GetSystemMetrics(SM_CYSCREEN);
    ShowWindow(Handle(), fits ? showCommand : SW_SHOWMAXIMIZED);
    SetFocus(display_);
    if (!ShowPage(target)) {
        ShowMessageBox(Handle(), u"There is no help page \"" + target.page + u".htm\".");
        DestroyWindow(Handle());
        return false;
    }
    return true;
}

bool CVelmHelpWindow::CreateFrame() {
    if (!RegisterWindowClass(HELP_CLASS, LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1)),
                             LoadCursorW(nullptr, IDC_ARROW))) {
        return false;
    }
    RECT area{0, 0, Scaled(FRAME_FIRST_WIDTH), Scaled(FRAME_FIRST_HEIGHT)};
    AdjustWindowRectEx(&area, WS_OVERLAPPEDWINDOW, FALSE, 0);
    const HWND window =
        CreateWindowExW(0, HELP_CLASS, L"Velmora Help", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                        CW_USEDEFAULT, Width(area), Height(area), nullptr, nullptr, GetModuleHandleW(nullptr), this);
    return window != nullptr && display_ != nullptr;
}

bool CVelmHelpWindow::ShowPage(const HelpTarget& target) {
    // A target without a page is a place in the page that is shown.
    if (!target.page.empty() && !EqualsNoCase(target.page, shownPage_)) {
        const auto found = std::find_if(pages_.names.begin(), pages_.names.end(),
                                        [&target](const CVelmString& name) { return EqualsNoCase(name, target.page); });
        CVelmString text;
        if (found == pages_.names.end() ||
            !pages_.ReadReference(static_cast<std::size_t>(found - pages_.names.begin()), text)) {
            return false;
        }
        SendMessageW(display_, DTM_CLEAR, 0, 0);
        SendMessageW(display_, DTM_ADDTEXTW, FALSE, reinterpret_cast<LPARAM>(Wide(text)));
        SendMessageW(display_, DTM_ENDOFSOURCE, 0, 0);
        shownPage_ = target.page;
    }
    if (shownPage_.empty()) {
        return false;
    }
    if (!target.anchor.empty()) {
        SendMessageW(display_, DTM_ANCHORW, 0, reinterpret_cast<LPARAM>(Wide(target.anchor)));
    }
    return true;
}

LRESULT CVelmHelpWindow::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            display_ = CreateHtmlControl(library_, Handle(), RECT{});
            return display_ != nullptr ? 0 : -1;
        case WM_SIZE:
            MoveWindow(display_, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
            return 0;
        case WM_SETFOCUS:
            SetFocus(display_);
            return 0;
        case WM_NOTIFY: {
            const auto* const hotspot = reinterpret_cast<const HtmlHotspot*>(lParam);
            if (hotspot->header.code == NM_HOTSPOT) {
                ShowPage(ParseHelpTarget(FromWide(hotspot->target)));
            }
            return 0;
        }
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return CVelmWindow::WindowProc(message, wParam, lParam);
    }
}

}  // namespace velm
