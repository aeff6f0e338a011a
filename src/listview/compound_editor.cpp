#include "listview/compound_editor.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "formats/decimal_format.h"
#include "resource.h"
#include "ui/display_scale.h"

namespace velm {
namespace {

constexpr int FONT_HEIGHT = 14;
constexpr int SIGN_WIDTH = 8;
constexpr int LABEL_MARGIN = 2;
constexpr int MIN_BOX_WIDTH = 18;
constexpr COLORREF TEXT_COLOR = RGB(0, 0, 0);
constexpr UINT FIRST_PART = 1;  // identifiers of the boxes within the editor

constexpr CVelmStringView DIGITS_AND_POINT = u"0123456789.";

bool IsPlainNumber(CVelmStringView text) {
    return text.find_first_not_of(DIGITS_AND_POINT) == CVelmStringView::npos;
}

}  // namespace

bool CVelmPartBox::OnKeyDown(WPARAM key) {
    switch (key) {
        case VK_RETURN:
            if (!owner->EnterPart(position + 1)) {
                owner->Accept();
            }
            return true;
        case VK_LEFT:
            return IsCaretAt(false) && owner->EnterPart(position - 1);
        case VK_RIGHT:
            return IsCaretAt(true) && owner->EnterPart(position + 1);
        default:
            return false;
    }
}

bool CVelmPartBox::OnChar(wchar_t unit) {
    switch (unit) {
        case L'-':
            owner->FlipSign();
            return true;
        case L'\r':
            return true;
        case L'\b':
            return Text().empty() && owner->EnterPart(position - 1);
        case L'.':
            return HasPointOutsideSelection();
        default:
            return unit >= L' ' && (unit < L'0' || unit > L'9');
    }
}

bool CVelmPartBox::OnPaste(const CVelmString& text) {
    CVelmString number = UngroupNumber(text).value_or(text);
    const bool negative = number.starts_with(u'-');
    number.erase(0, negative ? 1 : 0);
    if (number.empty() || !IsPlainNumber(number) || std::count(number.begin(), number.end(), u'.') > 1) {
        MessageBeep(MB_OK);
        return true;
    }
    if (number.find(u'.') != CVelmString::npos && HasPointOutsideSelection()) {
        SelectAll();
    }
    ReplaceSelection(number);
    if (negative) {
        owner->SetNegative(true);
    }
    return true;
}

/// Without a selection, at the start or the end of the text.
bool CVelmPartBox::IsCaretAt(bool end) const {
    const auto [from, to] = Selection();
    const auto length = static_cast<DWORD>(GetWindowTextLengthW(Handle()));
    // A part that was just entered is selected whole: then both its ends count.
    return from == to ? from == (end ? length : 0) : from == 0 && to == length;
}

bool CVelmPartBox::HasPointOutsideSelection() const {
    const auto [from, to] = Selection();
    CVelmString text = Text();
    text.erase(std::min<std::size_t>(from, text.size()), to - from);
    return text.find(u'.') != CVelmString::npos;
}

CVelmCompoundEditor::CVelmCompoundEditor() : font_(CreateProgramFont(FONT_HEIGHT, false)) {}

LRESULT CVelmCompoundEditor::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            return CreateParts() ? 0 : -1;
        case WM_SIZE:
            Layout();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            Paint();
            return 0;
        case WM_SETFOCUS:
            EnterPart(0);
            return 0;
        case WM_COMMAND:
            if (HIWORD(wParam) == EN_CHANGE) {
                NotifyChange();
            }
            return 0;
        default:
            return CVelmWindow::WindowProc(message, wParam, lParam);
    }
}

bool CVelmCompoundEditor::CreateParts() {
    for (int i = 0; i < COMPOUND_PARTS; ++i) {
        CVelmPartBox& part = parts_[static_cast<std::size_t>(i)];
        part.owner = this;
        part.position = i;
        if (!part.Create(Handle(), FIRST_PART + static_cast<UINT>(i), font_.get())) {
            return false;
        }
    }
    return true;
}

void CVelmCompoundEditor::SetParts(const CVelmValueFormat& format) {
    std::array<CVelmString, COMPOUND_PARTS> texts;
    count_ = SplitCompound(format.compoundParts, 0.0, texts);
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        labels_[i] = format.compoundParts[i].label;
    }
    SetValue(format, std::nan(""));
    Layout();
}

void CVelmCompoundEditor::SetValue(const CVelmValueFormat& format, double value) {
    std::array<CVelmString, COMPOUND_PARTS> texts;
    const bool shown = std::isfinite(value) && SplitCompound(format.compoundParts, value, texts) == count_ &&
                       std::all_of(texts.begin(), texts.end(), IsPlainNumber);
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        parts_[i].SetText(shown ? texts[i] : CVelmString());
    }
    SetNegative(shown && value < 0.0);
}

CVelmString CVelmCompoundEditor::Text() const {
    CVelmString text;
    bool empty = true;
    for (int i = 0; i < count_; ++i) {
        const CVelmString part = Part(i).Text();
        empty = empty && part.empty();
        // An empty part counts as 0, so that the parts behind it keep their places.
        text += (i == 0 ? u"" : u" ") + (part.empty() ? CVelmString(u"0") : part);
    }
    return empty ? CVelmString() : (negative_ ? u"-[" : u"[") + text + u"]";
}

void CVelmCompoundEditor::SetNegative(bool negative) {
    if (negative == negative_) {
        return;
    }
    negative_ = negative;
    InvalidateRect(Handle(), nullptr, FALSE);
    NotifyChange();
}

void CVelmCompoundEditor::FlipSign() {
    SetNegative(!negative_);
}

bool CVelmCompoundEditor::EnterPart(int position) {
    if (position < 0 || position >= count_) {
        return false;
    }
    CVelmPartBox& part = parts_[static_cast<std::size_t>(position)];
    SetFocus(part.Handle());
    part.SelectAll();
    return true;
}

bool CVelmCompoundEditor::MoveWithin(bool forward) {
    const int focused = FocusedPart();
    return focused >= 0 && EnterPart(forward ? focused + 1 : focused - 1);
}

void CVelmCompoundEditor::Accept() const {
    SendMessageW(GetParent(Handle()), WM_COMMAND, MAKEWPARAM(IDC_ACCEPT, 0), 0);
}

int CVelmCompoundEditor::FocusedPart() const {
    for (int i = 0; i < count_; ++i) {
        if (Part(i).HasFocus()) {
            return i;
        }
    }
    return -1;
}

void CVelmCompoundEditor::Layout() {
    const RECT area = ClientArea(Handle());
    std::array<int, COMPOUND_PARTS> labelWidths{};
    int boxesWidth = Width(area) - Scaled(SIGN_WIDTH);
    const int maxLabelWidth = count_ == 0 ? 0 : boxesWidth / count_ - Scaled(MIN_BOX_WIDTH);
    const CVelmTextMeasure measure(Handle(), font_.get());
    for (std::size_t i = 0; i < static_cast<std::size_t>(count_); ++i) {
        const int width = TextWidth(measure.Dc(), labels_[i]) + Scaled(2 * LABEL_MARGIN);
        labelWidths[i] = std::max(Scaled(LABEL_MARGIN), std::min(width, maxLabelWidth));
        boxesWidth -= labelWidths[i];
    }
    int left = Scaled(SIGN_WIDTH);
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        const bool used = i < static_cast<std::size_t>(count_);
        ShowWindow(parts_[i].Handle(), used ? SW_SHOWNA : SW_HIDE);
        if (!used) {
            continue;
        }
        const int width = std::max(Scaled(MIN_BOX_WIDTH), boxesWidth / count_);
        MoveWindow(parts_[i].Handle(), left, 0, width, Height(area), TRUE);
        left += width;
        labelAreas_[i] = {left + Scaled(LABEL_MARGIN), area.top, left + labelWidths[i], area.bottom};
        left += labelWidths[i];
    }
    InvalidateRect(Handle(), nullptr, FALSE);
}

void CVelmCompoundEditor::Paint() {
    const CVelmPainter painter(Handle());
    const HDC dc = painter.Dc();
    FillColor(dc, painter.UpdateArea(), RGB(255, 255, 255));
    if (negative_) {
        RECT area = ClientArea(Handle());
        area.right = Scaled(SIGN_WIDTH);
        DrawLine(dc, font_.get(), TEXT_COLOR, u"\u2212", area, DT_CENTER);
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(count_); ++i) {
        DrawLine(dc, font_.get(), TEXT_COLOR, labels_[i], labelAreas_[i], DT_END_ELLIPSIS);
    }
}

void CVelmCompoundEditor::NotifyChange() const {
    SendMessageW(GetParent(Handle()), WM_COMMAND, MAKEWPARAM(IDC_VALUE_EDIT, EN_CHANGE), 0);
}

}  // namespace velm
