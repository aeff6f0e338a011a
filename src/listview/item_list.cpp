#include "listview/item_list.h"

#include <windowsx.h>

#include <algorithm>
#include <array>
#include <utility>

#include "listview/format_menu.h"
#include "listview/value_panel.h"
#include "model/document.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "settings/settings.h"
#include "ui/bitmap.h"
#include "ui/clipboard.h"
#include "ui/display_scale.h"
#include "ui/scroll_bar.h"

namespace velm {
namespace {

constexpr int ROW_HEIGHT = 21;
constexpr int TWO_LINE_ROW_HEIGHT = 38;
constexpr int MIN_TWO_LINE_HEIGHT = 76;
constexpr int ROW_FONT = 14;
constexpr LPARAM NO_PLACE = -1;    // of a context menu that a key asks for
constexpr WORD FORMAT_BUTTON = 1;  // the command of every row's format button, posted to the list itself

/// The remainder that is never negative.
int Wrap(int index, int count) {
    return ((index % count) + count) % count;
}

}  // namespace

CVelmItemList::CVelmItemList(const CVelmListEnvironment& environment, CVelmValuePanel& panel)
    : environment_(environment),
      panel_(panel),
      nameFont_(CreateProgramFont(ROW_FONT, false)),
      valueFont_(CreateProgramFont(ROW_FONT, true)) {}

CVelmItemList::~CVelmItemList() = default;

LRESULT CVelmItemList::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (OnPen(message, wParam, lParam)) {
        return 0;
    }
    switch (message) {
        case WM_SIZE:
            Layout(LOWORD(lParam), HIWORD(lParam));
            return 0;
        case WM_ERASEBKGND:
            return 1;  // Paint does it, off the screen
        case WM_PAINT:
            Paint();
            return 0;
        case WM_VSCROLL:
            ScrollTo(ScrollTarget(Handle(), SB_VERT, LOWORD(wParam), 1));
            return 0;
        case WM_CHAR:
            if (wParam > L' ') {
                panel_.TakeCharacter(static_cast<wchar_t>(wParam));
                return 0;
            }
            break;
        case WM_COMMAND:
            if (LOWORD(wParam) == FORMAT_BUTTON) {
                OnFormatButton(lParam);
                return 0;
            }
            break;
        case WM_CONTEXTMENU:
            if (lParam == NO_PLACE) {
                OnMenuKey();
                return 0;
            }
            break;
        default:
            break;
    }
    return CVelmWindow::WindowProc(message, wParam, lParam);
}

void CVelmItemList::Release() {
    router_.Forget();
    rows_.clear();
    selected_ = -1;
    top_ = 0;
    wheelRest_ = 0;
    document_ = nullptr;
    panel_.Release();
}

void CVelmItemList::SetDocument(CVelmDocument* document) {
    Release();
    document_ = document;
    if (document != nullptr) {
        for (const auto& item : document->items) {
            if (item->shown != 0) {
                AppendRow(*item);
            }
        }
    }
    LayoutRows();
    UpdateScrollBar();
    Repaint();
    if (rows_.empty()) {
        NotifySelection();
    } else {
        SelectRow(0);
    }
}

CVelmItemRow& CVelmItemList::AppendRow(CVelmItem& item) {
    CVelmItemRow& row = *rows_.emplace_back(
        std::make_unique<CVelmItemRow>(item, Handle(), FORMAT_BUTTON, nameFont_.get(), valueFont_.get()));
    row.WriteValue(environment_.locale);
    return row;
}

int CVelmItemList::AddItem(CVelmItem& item) {
    AppendRow(item);
    LayoutRows();
    UpdateScrollBar();
    RepaintRow(RowCount() - 1);
    return RowCount() - 1;
}

void CVelmItemList::RemoveRow(int index) {
    if (!IsRow(index)) {
        return;
    }
    router_.Forget();
    // The selection's index stays when a row above it goes, and then names the following item, while the highlight
    // stays on the row that carried it. Deliberate: the list is rebuilt after every removal that the user sees.
    const bool selected = index == selected_;
    RECT area = ClientArea(Handle());
    area.top = std::max(area.top, rows_[static_cast<std::size_t>(index)]->Rectangle().top);
    rows_.erase(rows_.begin() + index);
    if (selected) {
        selected_ = -1;
        NotifySelection();
    }
    const int reached = Reachable(top_);
    const bool scrolled = std::exchange(top_, reached) != reached;
    LayoutRows();
    InvalidateRect(Handle(), scrolled ? nullptr : &area, FALSE);
    UpdateScrollBar();
}

void CVelmItemList::RefreshNames() {
    for (const auto& row : rows_) {
        row->WriteName();
    }
    Repaint();
}

void CVelmItemList::RefreshValues() {
    for (int i = 0; i < RowCount(); ++i) {
        if (rows_[static_cast<std::size_t>(i)]->WriteValue(environment_.locale)) {
            RepaintRow(i);
        }
    }
}

void CVelmItemList::ToggleRowSize() {
    environment_.settings.twoLineRows = environment_.settings.twoLineRows == 0 ? 1 : 0;
    Layout(width_, height_);
    Repaint();
}

void CVelmItemList::CopySelectedValue() {
    const CVelmItemRow* const row = FindRow(selected_);
    if (row != nullptr && !SetClipboardText(Handle(), row->ValueText())) {
        MessageBoxW(Handle(), L"Failed to set clipboard data", L"Copy", MB_OK | MB_ICONERROR);
    }
}

void CVelmItemList::Layout(int width, int height) {
    width_ = width;
    height_ = height;
    twoLines_ = height >= Scaled(MIN_TWO_LINE_HEIGHT) && environment_.settings.twoLineRows != 0;
    rowHeight_ = Scaled(twoLines_ ? TWO_LINE_ROW_HEIGHT : ROW_HEIGHT);
    visibleRows_ = std::max(1, height / rowHeight_);
    top_ = Reachable(top_);
    LayoutRows();
    UpdateScrollBar();
}

void CVelmItemList::LayoutRows() {
    for (int i = 0; i < RowCount(); ++i) {
        const LONG y = (i - top_) * rowHeight_;
        rows_[static_cast<std::size_t>(i)]->Move({0, y, width_, y + rowHeight_}, twoLines_);
    }
}

int CVelmItemList::Reachable(int top) const {
    return std::max(0, std::min(top, RowCount() - visibleRows_));
}

void CVelmItemList::UpdateScrollBar() const {
    SetScrollBar(Handle(), SB_VERT, {RowCount(), visibleRows_, top_}, true);
}

void CVelmItemList::RepaintRow(int index) const {
    if (index >= top_ && index <= top_ + visibleRows_ && IsRow(index)) {
        InvalidateRect(Handle(), &Row(index).Rectangle(), FALSE);
    }
}

void CVelmItemList::Repaint() const {
    InvalidateRect(Handle(), nullptr, FALSE);
}

void CVelmItemList::ScrollTo(int top) {
    const int reached = Reachable(top);
    if (reached == top_) {
        return;
    }
    top_ = reached;
    LayoutRows();
    UpdateScrollBar();
    Repaint();
}

void CVelmItemList::BringIntoView(int index) {
    if (index < top_) {
        ScrollTo(index);
    } else if (index >= top_ + visibleRows_) {
        ScrollTo(index - visibleRows_ + 1);
    }
}

void CVelmItemList::SelectRow(int index) {
    if (index == selected_) {
        return;
    }
    if (CVelmItemRow* const old = FindRow(selected_)) {
        old->SetSelected(false);
        old->WriteValue(environment_.locale);
        RepaintRow(selected_);
    }
    selected_ = IsRow(index) ? index : -1;
    if (CVelmItemRow* const row = FindRow(selected_)) {
        row->SetSelected(true);
        row->WriteValue(environment_.locale);
        RepaintRow(selected_);
        BringIntoView(selected_);
    }
    NotifySelection();
}

void CVelmItemList::NotifySelection() {
    CVelmItemRow* const row = FindRow(selected_);
    CVelmItem* const item = row != nullptr ? &row->Item() : nullptr;
    if (document_ != nullptr) {
        document_->currentItem = item;
    }
    const bool shown = panel_.IsShown();
    panel_.AttachItem(item);
    if (panel_.IsShown() != shown) {
        SendMessageW(GetParent(Handle()), WM_SIZE, SIZE_RESTORED, 0);  // the frame lays list and panel out anew
    }
    if (selected_ >= 0) {
        BringIntoView(selected_);  // the panel that came up may have covered it
    }
}

bool CVelmItemList::HandleKey(WPARAM key) {
    if (rows_.empty()) {
        return false;
    }
    // Every key goes round at the ends, the page keys too. Deliberate: a short list is walked with one key.
    const int count = RowCount();
    switch (key) {
        case VK_UP:
            SelectRow(Wrap(selected_ + count - 1, count));
            return true;
        case VK_DOWN:
            SelectRow(Wrap(selected_ + 1, count));
            return true;
        case VK_PRIOR:
            SelectRow(Wrap(count - visibleRows_ + selected_, count));
            return true;
        case VK_NEXT:
            SelectRow(Wrap(visibleRows_ + selected_, count));
            return true;
        default:
            return false;
    }
}

void CVelmItemList::ScrollByWheel(int distance) {
    wheelRest_ += distance;
    const int rows = wheelRest_ / WHEEL_DELTA;
    wheelRest_ -= rows * WHEEL_DELTA;
    ScrollTo(top_ - rows);
}

void CVelmItemList::Paint() {
    const CVelmPainter painter(Handle());
    CVelmBitmap::PaintBackground(nullptr, Handle(), painter.Dc(), painter.UpdateArea());
    const COLORREF rowColor = MixColor(MIX_ROW, BaseColor());
    const int last = std::min(top_ + visibleRows_, RowCount() - 1);
    for (int i = top_; i <= last; ++i) {
        RECT common{};
        if (IntersectRect(&common, &Row(i).Rectangle(), &painter.UpdateArea())) {
            Row(i).Draw(painter.Dc(), environment_.formatIcons, rowColor, BaseColor());
        }
    }
}

int CVelmItemList::HitTest(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        return -1;
    }
    const int index = y / rowHeight_ + top_;
    return IsRow(index) ? index : -1;
}

bool CVelmItemList::OnPen(UINT message, WPARAM wParam, LPARAM lParam) {
    const POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    switch (message) {
        case WM_LBUTTONDOWN: {
            const int index = HitTest(static_cast<int>(place.x), static_cast<int>(place.y));
            CVelmItemRow* const row = FindRow(index);
            const std::array<CVelmPressButton*, 1> buttons = {row != nullptr ? &row->Button() : nullptr};
            SetFocus(Handle());
            if (row == nullptr || !router_.Route(buttons, message, wParam, lParam)) {
                OnPenDown(place);
            }
            return true;
        }
        case WM_RBUTTONUP:
            OnRightButton(place);
            return true;
        default:
            return router_.Route({}, message, wParam, lParam);
    }
}

void CVelmItemList::OnPenDown(POINT place) {
    const int index = HitTest(static_cast<int>(place.x), static_cast<int>(place.y));
    if (index < 0) {
        return;
    }
    SelectRow(index);
    if (panel_.IsShown()) {
        SetFocus(panel_.Handle());  // what is typed next is the row's value
    }
    const SHRGINFO gesture{sizeof(gesture), Handle(), place, SHRG_RETURNCMD};
    if (SHRecognizeGesture(&gesture) == GN_CONTEXTMENU && IsRow(index)) {
        ShowRowMenu(index, place);
    }
}

void CVelmItemList::OnRightButton(POINT place) {
    const int index = HitTest(static_cast<int>(place.x), static_cast<int>(place.y));
    if (index >= 0) {
        SelectRow(index);
        ShowRowMenu(index, place);
    }
}

void CVelmItemList::OnMenuKey() {
    if (IsRow(selected_)) {
        BringIntoView(selected_);
        const RECT& area = Row(selected_).Rectangle();
        ShowRowMenu(selected_, {area.left, area.bottom});
    }
}

void CVelmItemList::ShowSelectedFormats() {
    if (IsRow(selected_)) {
        BringIntoView(selected_);
        OnFormatButton(reinterpret_cast<LPARAM>(&Row(selected_)));
    }
}

void CVelmItemList::ShowRowMenu(int index, POINT place) {
    const CVelmMenu menu(CreatePopupMenu());
    if (!Row(index).ValueText().empty()) {
        AppendMenuW(menu.get(), MF_STRING, ID_COPY, L"Copy Value");
        AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
    }
    AppendMenuW(menu.get(), MF_STRING, ID_EDIT_UNIT, L"Edit");
    AppendMenuW(menu.get(), MF_STRING, ID_REMOVE_FROM_LIST, L"Remove from List");
    ClientToScreen(Handle(), &place);
    TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_TOPALIGN, static_cast<int>(place.x), static_cast<int>(place.y), 0,
                   GetParent(Handle()), nullptr);
}

bool CVelmItemList::ChooseFormat(POINT place, CVelmValueFormat& format) {
    const std::uint32_t code = ShowFormatMenu(Handle(), place, format);
    if (code == CUSTOMIZE_FORMATS) {
        if (environment_.customizeFormats(GetParent(Handle()), format) != IDOK) {
            return false;
        }
        document_->Touch();
        return true;
    }
    // Another way to look at a value is kept, but is no newer data: the updated text stays.
    return code != 0 && std::exchange(format.displayFormat, code) != code;
}

void CVelmItemList::OnFormatButton(LPARAM parameter) {
    // The command was posted: the row may be gone.
    const auto found = std::find_if(rows_.begin(), rows_.end(), [parameter](const auto& row) {
        return reinterpret_cast<LPARAM>(row.get()) == parameter;
    });
    if (found == rows_.end()) {
        return;
    }
    const auto index = static_cast<int>(found - rows_.begin());
    CVelmItem& item = (*found)->Item();
    POINT place{(*found)->Button().Rectangle().left, (*found)->Button().Rectangle().bottom};
    ClientToScreen(Handle(), &place);
    if (!ChooseFormat(place, item.format)) {
        return;
    }
    PostMessageW(GetParent(Handle()), WM_COMMAND, ID_SAVE, 0);
    (*found)->WriteValue(environment_.locale);
    RepaintRow(index);
    if (index == selected_) {
        panel_.AttachItem(&item);
    }
}

}  // namespace velm
