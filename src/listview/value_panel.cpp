#include "listview/value_panel.h"

#include <commctrl.h>

#include <algorithm>

#include "formats/format_table.h"
#include "model/item.h"
#include "resource.h"
#include "ui/bitmap.h"
#include "ui/display_scale.h"

namespace velm {
namespace {

constexpr UINT TICK_MS = 100;
constexpr int TICKS_TO_COMMIT = 4;

// Pixels at scale 1.
constexpr int MARGIN = 2;
constexpr int LINE_HEIGHT = 20;
constexpr int TAB_TOP = 24;
constexpr int TAB_HEIGHT = 16;
constexpr int TAB_ROOM = 10;
constexpr int TAB_FONT = 12;
constexpr int BUTTON_WIDTH = 20;

}  // namespace

CVelmValuePanel::CVelmValuePanel(FormulaContext& context)
    : context_(context),
      editor_(context),
      tabFont_(CreateProgramFont(TAB_FONT, false)),
      errorIcon_(LoadProgramIcon(IDI_VALUE_ERROR)),
      acceptedIcon_(LoadProgramIcon(IDI_VALUE_ACCEPTED)),
      restoreIcon_(LoadProgramIcon(IDI_RESTORE)) {}

LRESULT CVelmValuePanel::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (RoutePen(message, wParam, lParam)) {
        return 0;
    }
    switch (message) {
        case WM_CREATE:
            return OnCreate() ? 0 : -1;
        case WM_SIZE:
            Layout();
            return 0;
        case WM_ERASEBKGND:
            return 1;  // Paint does it, off the screen
        case WM_PAINT:
            Paint();
            return 0;
        case WM_SETFOCUS:
            editor_.Focus();
            return 0;
        case WM_TIMER:
            if (wParam == COMMIT_TIMER) {
                OnTimer();
                return 0;
            }
            break;
        case WM_COMMAND:
            OnCommand(LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_NOTIFY:
            if (reinterpret_cast<const NMHDR*>(lParam)->code == DTN_DATETIMECHANGE) {
                OnEdited();
                return 0;
            }
            break;
        case WM_CTLCOLOREDIT:
            if (reinterpret_cast<HWND>(lParam) == editor_.Box().Handle()) {
                const HDC dc = reinterpret_cast<HDC>(wParam);
                SetTextColor(dc, editor_.TextParses() ? RGB(0, 0, 0) : RGB(255, 0, 0));
                SetBkColor(dc, GetSysColor(COLOR_WINDOW));
                return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
            }
            break;
        default:
            break;
    }
    return CVelmWindow::WindowProc(message, wParam, lParam);
}

bool CVelmValuePanel::OnCreate() {
    if (!editor_.Create(Handle())) {
        return false;
    }
    accept_.Init({}, Handle(), IDC_ACCEPT);
    accept_.SetIcon(acceptedIcon_.get());
    restore_.Init({}, Handle(), IDC_RESTORE);
    restore_.SetIcon(restoreIcon_.get());
    Layout();
    return SetTimer(Handle(), COMMIT_TIMER, TICK_MS, nullptr) != 0;
}

bool CVelmValuePanel::RoutePen(UINT message, WPARAM wParam, LPARAM lParam) {
    std::array<CVelmPressButton*, MAX_TABS + 2> buttons = {&accept_, &restore_};
    for (std::size_t i = 0; i < tabCount_; ++i) {
        buttons[i + 2] = &tabs_[i].button;
    }
    return router_.Route(std::span(buttons).first(tabCount_ + 2), message, wParam, lParam);
}

void CVelmValuePanel::Release() {
    router_.Forget();
    pendingEdits_ = 0;
    ticks_ = 0;
    item_ = nullptr;
    tabCount_ = 0;
    editor_.Release();
}

void CVelmValuePanel::AttachItem(CVelmItem* item) {
    const bool hadFocus = IsChild(Handle(), GetFocus()) != FALSE;
    Release();
    item_ = item;
    if (item == nullptr || item->IsOutput()) {
        editor_.AttachItem(nullptr, FMT_DECIMAL);
        if (hadFocus) {
            SetFocus(GetParent(Handle()));
        }
        Show(false);
        return;
    }
    MakeTabs();
    Show(true);
    editor_.AttachItem(item, item->format.TypedFormat());
    if (item->state == STATE_VALID) {
        editor_.LoadValue(item->value, false);
    }
    accept_.SetIcon(acceptedIcon_.get());
    if (hadFocus) {
        editor_.Focus();
    }
}

void CVelmValuePanel::MakeTabs() {
    const std::uint32_t typed = item_->format.TypedFormat();
    for (const FormatKind& format : Formats()) {
        if (!format.HasTab(item_->format.allowedFormats) || tabCount_ == MAX_TABS) {
            continue;
        }
        Tab& tab = tabs_[tabCount_];
        tab.code = format.code;
        tab.button.Init({}, Handle(), static_cast<WORD>(IDC_FIRST_TAB + tabCount_));
        tab.button.SetFont(tabFont_.get());
        tab.button.SetText(format.tabText);
        tab.button.SetSelected(format.code == typed);
        ++tabCount_;
    }
    LayoutTabs();
    InvalidateRect(Handle(), nullptr, FALSE);
}

double CVelmValuePanel::ValueToShow() const {
    if (item_->state == STATE_VALID) {
        return item_->value;
    }
    double value = NO_VALUE;
    item_->ReadStoredValue(context_, value);
    return value;
}

void CVelmValuePanel::SelectTab(std::size_t index) {
    if (item_ == nullptr || index >= tabCount_ || tabs_[index].button.IsSelected()) {
        return;
    }
    item_->format.inputFormat = tabs_[index].code;
    editor_.SetFormat(tabs_[index].code, ValueToShow());
    for (std::size_t i = 0; i < tabCount_; ++i) {
        tabs_[i].button.SetSelected(i == index);
    }
    PostMessageW(GetParent(Handle()), WM_COMMAND, ID_SAVE, 0);
}

void CVelmValuePanel::OnCommand(WORD id, WORD notification) {
    if (id == IDC_VALUE_EDIT && notification == EN_CHANGE) {
        OnEdited();
    } else if (notification != 0) {
        return;
    } else if (id == IDC_ACCEPT) {
        Accept();
    } else if (id == IDC_RESTORE) {
        Restore();
    } else if (id >= IDC_FIRST_TAB && id <= IDC_LAST_TAB) {
        SelectTab(static_cast<std::size_t>(id - IDC_FIRST_TAB));
    }
}

void CVelmValuePanel::OnEdited() {
    if (!editor_.IsLoading()) {
        ++pendingEdits_;
        ticks_ = 0;
    }
}

void CVelmValuePanel::OnTimer() {
    if (pendingEdits_ > 0 && ++ticks_ % TICKS_TO_COMMIT == 0) {
        ticks_ = 0;
        CommitValue(false);
    }
}

bool CVelmValuePanel::CommitValue(bool force) {
    if (!force && pendingEdits_ == 0) {
        return false;
    }
    pendingEdits_ = 0;
    if (item_ == nullptr || item_->IsOutput()) {
        return false;
    }
    double value = NO_VALUE;
    const bool stored = editor_.ParseValue(value);
    if (stored) {
        item_->SetValue(value);
        PostMessageW(GetParent(Handle()), WM_COMMAND, ID_CALCULATE, 0);
    }
    accept_.SetIcon(stored || editor_.IsEmpty() ? acceptedIcon_.get() : errorIcon_.get());
    return stored;
}

void CVelmValuePanel::Accept() {
    CommitValue(true);
    if (item_ != nullptr && item_->state == STATE_VALID) {
        editor_.LoadValue(item_->value, false);
    }
}

void CVelmValuePanel::Restore() {
    double value = NO_VALUE;
    if (item_ != nullptr && item_->ReadStoredValue(context_, value)) {
        editor_.LoadValue(value, true);
    }
}

bool CVelmValuePanel::HandleTab(bool backward) {
    return editor_.MoveWithin(!backward);
}

void CVelmValuePanel::TakeCharacter(wchar_t unit) {
    SendInPlaceOfText(WM_CHAR, unit, 1);
}

void CVelmValuePanel::Paste() {
    SendInPlaceOfText(WM_PASTE, 0, 0);
}

void CVelmValuePanel::SendInPlaceOfText(UINT message, WPARAM wParam, LPARAM lParam) {
    if (IsShown()) {
        editor_.Focus();
        editor_.SelectAll();
        SendMessageW(GetFocus(), message, wParam, lParam);
    }
}

void CVelmValuePanel::Layout() {
    const RECT area = ClientArea(Handle());
    const LONG margin = Scaled(MARGIN);
    const LONG bottom = margin + Scaled(LINE_HEIGHT);
    const LONG button = Scaled(BUTTON_WIDTH);
    const LONG restoreLeft = area.right - margin - button;
    const LONG acceptLeft = restoreLeft - margin - button;
    restore_.Move({restoreLeft, margin, restoreLeft + button, bottom});
    accept_.Move({acceptLeft, margin, acceptLeft + button, bottom});
    editor_.Move({margin, margin, std::max(margin, acceptLeft - margin), bottom});
    LayoutTabs();
    InvalidateRect(Handle(), nullptr, FALSE);
}

/// Each tab as wide as its caption; all of them narrower when together they are too wide for the panel.
void CVelmValuePanel::LayoutTabs() {
    const RECT area = ClientArea(Handle());
    std::array<int, MAX_TABS> widths{};
    int sum = 0;
    const CVelmTextMeasure measure(Handle(), tabFont_.get());
    for (std::size_t i = 0; i < tabCount_; ++i) {
        widths[i] = TextWidth(measure.Dc(), tabs_[i].button.Text()) + Scaled(TAB_ROOM);
        sum += widths[i];
    }
    const int room = std::max(0, Width(area) - Scaled(2 * MARGIN));
    LONG left = Scaled(MARGIN);
    for (std::size_t i = 0; i < tabCount_; ++i) {
        const LONG width = sum > room ? MulDiv(widths[i], room, sum) : widths[i];
        tabs_[i].button.Move({left, Scaled(TAB_TOP), left + width, Scaled(TAB_TOP + TAB_HEIGHT)});
        left += width;
    }
}

void CVelmValuePanel::Paint() {
    const CVelmPainter painter(Handle());
    RECT edge = ClientArea(Handle());
    edge.bottom = edge.top + 1;
    FillColor(painter.Dc(), painter.UpdateArea(), RGB(255, 255, 255));
    FillColor(painter.Dc(), edge, EdgeColor());
    accept_.Draw(painter.Dc());
    restore_.Draw(painter.Dc());
    for (std::size_t i = 0; i < tabCount_; ++i) {
        TabButton(i).Draw(painter.Dc());
    }
}

}  // namespace velm
