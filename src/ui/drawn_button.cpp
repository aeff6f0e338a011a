#include "ui/drawn_button.h"

#include <utility>

#include "ui/bitmap.h"
#include "ui/display_scale.h"
#include "ui/gdi.h"

namespace velm {
namespace {

constexpr int SIGN_HALF_WIDTH = 4;
constexpr int SIGN_ROOM = 14;
constexpr int NOTE_GAP = 8;

/// Lightening of a selected button's face.
constexpr int SELECTED_TINT = 170;

constexpr COLORREF TEXT_COLOR = RGB(0, 0, 0);
constexpr COLORREF DISABLED_COLOR = RGB(144, 144, 144);

}  // namespace

void CVelmDrawnButton::SetText(CVelmString text) {
    if (text != text_) {
        text_ = std::move(text);
        Redraw();
    }
}

void CVelmDrawnButton::SetNote(CVelmString note, COLORREF color) {
    if (note != note_ || color != noteColor_) {
        note_ = std::move(note);
        noteColor_ = color;
        Redraw();
    }
}

void CVelmDrawnButton::SetFont(HFONT font) {
    font_ = font;
}

void CVelmDrawnButton::SetIcon(HICON icon) {
    if (std::exchange(icon_, icon) != icon) {
        Redraw();
    }
}

void CVelmDrawnButton::SetSelected(bool on) {
    if (std::exchange(selected_, on) != on) {
        Redraw();
    }
}

void CVelmDrawnButton::Draw(HDC dc) const {
    DrawFrame(dc);
    RECT textArea = Rectangle();
    textArea.left = DrawIcon(dc) + Scaled(3);
    textArea.right -= Scaled(menuSign_ ? SIGN_ROOM : 2);
    if (menuSign_) {
        DrawMenuSign(dc);
    }
    if (text_.empty() || textArea.left >= textArea.right) {
        return;
    }
    const HFONT font = font_ != nullptr ? font_ : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    DrawNote(dc, font, textArea);
    DrawLine(dc, font, State() == BUTTON_DISABLED ? DISABLED_COLOR : TEXT_COLOR, text_, textArea,
             DT_END_ELLIPSIS | (icon_ != nullptr ? DT_LEFT : DT_CENTER));
}

void CVelmDrawnButton::DrawNote(HDC dc, HFONT textFont, RECT& area) const {
    if (note_.empty()) {
        return;
    }
    const auto widthIn = [dc](HFONT font, const CVelmString& text) {
        const CVelmSelect selected(dc, font);
        return TextWidth(dc, text);
    };
    const int room = widthIn(noteFont_, note_) + Scaled(NOTE_GAP);
    if (widthIn(textFont, text_) + room > Width(area)) {
        return;
    }
    DrawLine(dc, noteFont_, noteColor_, note_, area, DT_RIGHT);
    area.right -= room;
}

void CVelmDrawnButton::DrawFrame(HDC dc) const {
    COLORREF face = RGB(255, 255, 255);
    if (State() == BUTTON_PRESSED) {
        face = EdgeColor();
    } else if (selected_) {
        face = MixColor(SELECTED_TINT, BaseColor());
    }
    FillColor(dc, Rectangle(), EdgeColor());
    RECT inside = Rectangle();
    InflateRect(&inside, -DisplayScale(), -DisplayScale());
    FillColor(dc, inside, face);
}

int CVelmDrawnButton::DrawIcon(HDC dc) const {
    const RECT& area = Rectangle();
    if (icon_ == nullptr) {
        return static_cast<int>(area.left);
    }
    const int size = Scaled(ICON_SIZE);
    const int x = static_cast<int>(area.left) + (text_.empty() && !menuSign_ ? (Width(area) - size) / 2 : Scaled(3));
    const int y = static_cast<int>(area.top) + (Height(area) - size) / 2;
    DrawIconEx(dc, x, y, icon_, size, size, 0, nullptr, DI_NORMAL);
    return x + size;
}

void CVelmDrawnButton::DrawMenuSign(HDC dc) const {
    const RECT& area = Rectangle();
    const int half = Scaled(SIGN_HALF_WIDTH);
    const int middle = static_cast<int>(area.right) - Scaled(SIGN_ROOM) / 2 - DisplayScale();
    const int top = static_cast<int>(area.top) + (Height(area) - half) / 2;
    for (int line = 0; line < half; ++line) {
        FillColor(dc, RECT{middle - half + line, top + line, middle + half - line, top + line + 1}, TEXT_COLOR);
    }
}

}  // namespace velm
