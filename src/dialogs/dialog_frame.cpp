#include "dialogs/dialog_frame.h"

#include <algorithm>

#include "platform/wide_text_win32.h"
#include "pocketpc/command_bar.h"
#include "pocketpc/shell.h"
#include "ui/display_scale.h"
#include "ui/scroll_bar.h"
#include "ui/window_class.h"
#include "ui/window_text.h"

namespace velm {
namespace {

// Pixels at scale 1.
constexpr int CAPTION_HEIGHT = 24;
constexpr int CAPTION_FONT = 18;
constexpr int CAPTION_MARGIN = 4;
constexpr int CONTENT_TOP = CAPTION_HEIGHT + 1;
constexpr int TEXT_FONT = 13;
constexpr int SCROLL_STEP = DIALOG_ROW_HEIGHT;

constexpr COLORREF LINE_COLOR = RGB(0, 0, 0);

/// Result of a dialog that could not be created.
constexpr INT_PTR NOT_MADE = -1;

BOOL CALLBACK GiveFont(HWND control, LPARAM font) {
    SendMessageW(control, WM_SETFONT, static_cast<WPARAM>(font), FALSE);
    return TRUE;
}

int At(const CVelmEdge& edge, int room) {
    return room * edge.percent / 100 + Scaled(edge.offset);
}

/// Clips a control, so that scrolled controls cover neither caption nor menu bar.
void ClipTo(HWND control, const RECT& room) {
    const RECT area = PlaceInParent(control);
    RECT visible{};
    IntersectRect(&visible, &area, &room);
    if (EqualRect(&visible, &area)) {
        SetWindowRgn(control, nullptr, TRUE);
        return;
    }
    OffsetRect(&visible, -area.left, -area.top);
    CVelmRegion region(CreateRectRgnIndirect(&visible));
    if (SetWindowRgn(control, region.get(), TRUE) != 0) {
        static_cast<void>(region.release());  // owned by the system now
    }
}

}  // namespace

RECT PlaceInParent(HWND control) {
    RECT area{};
    GetWindowRect(control, &area);
    MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&area), 2);
    return area;
}

void PaintDialogCaption(HDC dc, int width, const CVelmString& text) {
    const CVelmFont font = CreateProgramFont(CAPTION_FONT, true);
    DrawLine(dc, font.get(), BaseColor(), text, {Scaled(CAPTION_MARGIN), 0, width, Scaled(CAPTION_HEIGHT)},
             DT_END_ELLIPSIS);
    FillColor(dc, {0, Scaled(CAPTION_HEIGHT), width, Scaled(CAPTION_HEIGHT) + 1}, LINE_COLOR);
}

int CVelmDialog::Show(HWND parent) {
    return static_cast<int>(DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(template_), parent, DialogProc,
                                            reinterpret_cast<LPARAM>(this)));
}

INT_PTR CALLBACK CVelmDialog::DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        reinterpret_cast<CVelmDialog*>(lParam)->handle_ = dialog;
    }
    auto* const object = reinterpret_cast<CVelmDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
    return object == nullptr ? FALSE : object->Handle(message, wParam, lParam);
}

INT_PTR CVelmDialog::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            return Init();
        case WM_SIZE:
            Layout();
            return TRUE;
        case WM_PAINT:
            Paint();
            return TRUE;
        case WM_COMMAND:
            return HandleCommand(wParam, lParam);
        case WM_NOTIFY:
            SetWindowLongPtrW(handle_, DWLP_MSGRESULT, OnNotify(*reinterpret_cast<const NMHDR*>(lParam)));
            return TRUE;
        case WM_VKEYTOITEM: {
            constexpr INT_PTR USED_UP = -2;
            constexpr INT_PTR AS_USUAL = -1;
            return OnListKey(LOWORD(wParam)) ? USED_UP : AS_USUAL;
        }
        case WM_VSCROLL:
            OnScroll(LOWORD(wParam));
            return TRUE;
        case WM_MOUSEWHEEL:
            OnScroll(GET_WHEEL_DELTA_WPARAM(wParam) > 0 ? SB_LINEUP : SB_LINEDOWN);
            return TRUE;
        case WM_SYSCOMMAND:
            // With Alt or F10 alone; a letter that no label has is left to the system, which beeps.
            return (wParam & 0xFFF0) == SC_KEYMENU && lParam == 0 && OpenMenu() ? TRUE : FALSE;
        case WM_CTLCOLORDLG:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORSTATIC:
            return ControlColor(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
        default:
            return FALSE;
    }
}

INT_PTR CVelmDialog::Init() {
    SHMENUBARINFO bar{sizeof(bar), handle_, menuBar_, GetModuleHandleW(nullptr), DisplayScale(), nullptr};
    if (!SHCreateMenuBar(&bar)) {
        End(NOT_MADE);
        return TRUE;
    }
    bar_ = bar.hwndMB;
    scrollBar_ = CreateControl(L"SCROLLBAR", SBS_VERT, handle_, 0, nullptr);
    SetWindowTextW(handle_, Wide(caption_));
    font_ = CreateProgramFont(TEXT_FONT, false);
    for (const CVelmPlacement& placement : placements_) {
        GiveFont(Control(placement.control), reinterpret_cast<LPARAM>(font_.get()));
    }
    const HWND focus = OnInit();
    SHINITDLGINFO info{SHIDIM_FLAGS, handle_, SHIDIF_SIZEDLGFULLSCREEN};
    SHInitDialog(&info);
    Layout();
    if (focus == nullptr) {
        return TRUE;
    }
    SetFocus(focus);
    return FALSE;
}

RECT CVelmDialog::Room() const {
    RECT room = CommandBar_AreaAbove(handle_, bar_);
    room.top = std::min<LONG>(Scaled(CONTENT_TOP), room.bottom);
    return room;
}

void CVelmDialog::Layout() {
    if (bar_ == nullptr) {
        return;  // not initialized yet
    }
    RECT room = Room();
    const int needed = Scaled(minHeight_);
    const bool scrolls = needed > Height(room);
    if (scrolls) {
        const LONG left = room.right - GetSystemMetrics(SM_CXVSCROLL);
        SetWindowPos(scrollBar_, HWND_TOP, left, room.top, room.right - left, Height(room), SWP_NOACTIVATE);
        room.right = left;
    }
    ShowWindow(scrollBar_, scrolls ? SW_SHOWNA : SW_HIDE);
    scrollTop_ = std::clamp(scrollTop_, 0, std::max(0, needed - Height(room)));
    SetScrollBar(scrollBar_, SB_CTL, {needed, Height(room), scrollTop_});
    for (const CVelmPlacement& placement : placements_) {
        Place(placement, room, std::max(needed, Height(room)));
    }
    OnLayout();
    InvalidateRect(handle_, nullptr, TRUE);
}

void CVelmDialog::Place(const CVelmPlacement& placement, const RECT& room, int height) const {
    const HWND control = Control(placement.control);
    const int left = At(placement.left, Width(room));
    const int top = At(placement.top, height);
    const int origin = static_cast<int>(room.top) - scrollTop_;
    MoveWindow(control, left, origin + top, std::max(0, At(placement.right, Width(room)) - left),
               std::max(0, At(placement.bottom, height) - top), TRUE);
    ClipTo(control, room);
}

void CVelmDialog::ScrollTo(int top) {
    if (IsWindowVisible(scrollBar_) && top != scrollTop_) {
        scrollTop_ = top;
        Layout();
    }
}

void CVelmDialog::OnScroll(int request) {
    ScrollTo(ScrollTarget(scrollBar_, SB_CTL, request, Scaled(SCROLL_STEP)));
}

void CVelmDialog::BringIntoView(HWND control) {
    const RECT area = PlaceInParent(control);
    const RECT room = Room();
    const int below = static_cast<int>(area.bottom - room.bottom) + Scaled(DIALOG_MARGIN);
    const int above = static_cast<int>(room.top - area.top) + Scaled(DIALOG_MARGIN);
    if (above > 0) {
        ScrollTo(scrollTop_ - above);
    } else if (below > 0) {
        ScrollTo(scrollTop_ + below);
    }
}

INT_PTR CVelmDialog::HandleCommand(WPARAM wParam, LPARAM lParam) {
    const auto control = reinterpret_cast<HWND>(lParam);
    // An editable drop-down box passes the focus to its edit box.
    if (control != nullptr && (control == GetFocus() || IsChild(control, GetFocus()))) {
        BringIntoView(control);
    }
    switch (LOWORD(wParam)) {
        case IDOK:
            OnOk();
            return TRUE;
        case IDCANCEL:
            OnCancel();
            return TRUE;
        default:
            OnCommand(LOWORD(wParam), HIWORD(wParam));
            return TRUE;
    }
}

INT_PTR CVelmDialog::ControlColor(HDC dc, HWND control) const {
    if (control != handle_ && IsOfClass(control, L"Edit")) {
        return FALSE;  // a box that is only read keeps its read-only color
    }
    SetBkColor(dc, GetSysColor(COLOR_WINDOW));
    return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
}

bool CVelmDialog::OpenMenu() const {
    // A bar that begins with a button has no menu to open.
    return GetSubMenu(CommandBar_GetMenu(bar_), 0) != nullptr && CommandBar_OpenMenu(bar_, 0);
}

void CVelmDialog::Paint() const {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(handle_, &paint);
    const RECT area = ClientArea(handle_);
    PaintDialogCaption(dc, static_cast<int>(area.right), caption_);
    EndPaint(handle_, &paint);
}

void CVelmDialog::SetText(int id, const CVelmString& text, std::size_t longest) const {
    const HWND control = Control(id);
    const UINT limit = IsOfClass(control, L"ComboBox") ? UINT{CB_LIMITTEXT} : UINT{EM_LIMITTEXT};
    SendMessageW(control, limit, longest, 0);
    SetWindowTextW(control, Wide(text));
}

CVelmString CVelmDialog::Text(int id, std::size_t longest) const {
    return WindowText(Control(id)).substr(0, longest);
}

void CVelmDialog::ShowControls(std::span<const WORD> controls, bool on) const {
    for (const WORD control : controls) {
        ShowWindow(Control(control), on ? SW_SHOW : SW_HIDE);
    }
}

void CVelmDialog::Tell(const CVelmString& message, UINT icon, const wchar_t* caption) const {
    MessageBoxW(handle_, Wide(message), caption != nullptr ? caption : Wide(caption_), MB_OK | icon);
}

void CVelmDialog::Refuse(int id, const CVelmString& message, UINT icon, const wchar_t* caption) const {
    Tell(message, icon, caption);
    SendMessageW(handle_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id)), TRUE);
}

bool CVelmDialog::RefuseFault(EntryFault fault, std::span<const CVelmFaultText> texts, UINT icon) const {
    const auto found =
        std::find_if(texts.begin(), texts.end(), [fault](const auto& candidate) { return candidate.fault == fault; });
    if (found == texts.end()) {
        return false;
    }
    const CVelmString own = *found->text == u' ' ? u"\"" + Text(found->control) + u"\"" : CVelmString();
    Refuse(found->control, own + found->text, icon, found->caption);
    return true;
}

void CVelmDialog::InitList(int id, DWORD extendedStyles) const {
    const DWORD styles = LVS_EX_FULLROWSELECT | extendedStyles;
    Send(id, LVM_SETEXTENDEDLISTVIEWSTYLE, styles, static_cast<LPARAM>(styles));
}

void CVelmDialog::AddColumn(int id, int index, int format, int width) const {
    LVCOLUMNW column{};
    column.mask = LVCF_FMT | LVCF_WIDTH;
    column.fmt = format;
    column.cx = Scaled(width);
    Send(id, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column));
}

int CVelmDialog::AddRow(int id, const CVelmString& text, LPARAM value) const {
    LVITEMW item{};
    item.mask = LVIF_TEXT | LVIF_PARAM;
    item.iItem = static_cast<int>(Send(id, LVM_GETITEMCOUNT));
    item.pszText = const_cast<wchar_t*>(Wide(text));
    item.lParam = value;
    return static_cast<int>(Send(id, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
}

LPARAM CVelmDialog::RowValue(int id, int row) const {
    LVITEMW item{};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    Send(id, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return item.lParam;
}

}  // namespace velm
