#include "listview/item_row.h"

#include <algorithm>
#include <utility>

#include "listview/format_menu.h"
#include "model/item.h"
#include "ui/bitmap.h"
#include "ui/display_scale.h"
#include "ui/gdi.h"

namespace velm {
namespace {

constexpr int BUTTON_SIZE = 20;
constexpr int ICON_MARGIN = 2;
constexpr int LABEL_HEIGHT = 16;
constexpr int FULL_NAME_WIDTH = 121;

// The row's image with everything in place, one line or two: from the left, the top or (value of one line) the right.
constexpr int ONE_BUTTON_LEFT = 1;
constexpr int ONE_NAME_LEFT = 21;
constexpr int ONE_TOP = 3;
constexpr int ONE_NAME_ROOM = 180;
constexpr int ONE_VALUE_WIDTH = 160;
constexpr int TWO_LEFT = 4;
constexpr int TWO_BUTTON_TOP = 17;
constexpr int TWO_NAME_TOP = 2;
constexpr int TWO_NAME_ROOM = 12;
constexpr int TWO_VALUE_LEFT = 24;
constexpr int TWO_VALUE_TOP = 20;
constexpr int TWO_VALUE_ROOM = 30;

RECT Place(LONG left, LONG top, LONG width, LONG height) {
    return {left, top, left + width, top + height};
}

}  // namespace

void CVelmFormatButton::Draw(HDC dc, const CVelmBitmap& icons) const {
    const bool pressed = State() == BUTTON_PRESSED;
    FillColor(dc, Rectangle(), EdgeColor());
    RECT inside = Rectangle();
    InflateRect(&inside, -DisplayScale() * (pressed ? 2 : 1), -DisplayScale() * (pressed ? 2 : 1));
    FillColor(dc, inside, RGB(255, 255, 255));
    if (icon >= 0) {
        const int moved = pressed ? DisplayScale() : 0;
        icons.DrawImage(dc, icon, static_cast<int>(Rectangle().left) + Scaled(ICON_MARGIN) + moved,
                        static_cast<int>(Rectangle().top) + Scaled(ICON_MARGIN) + moved);
    }
}

CVelmItemRow::CVelmItemRow(CVelmItem& item, HWND owner, WORD command, HFONT nameFont, HFONT valueFont)
    : item_(item), owner_(owner), command_(command) {
    name_.font = nameFont;
    value_.font = valueFont;
    MoveButton(0, 0);
}

void CVelmItemRow::MoveButton(LONG left, LONG top) {
    // Not the button's own Move, which repaints it: the list repaints itself, and has thousands of rows to place.
    button_.Init(Place(left, top, Scaled(BUTTON_SIZE), Scaled(BUTTON_SIZE)), owner_, command_, false,
                 reinterpret_cast<LPARAM>(this));
}

void CVelmItemRow::Move(const RECT& rectangle, bool twoLines) {
    rectangle_ = rectangle;
    const LONG left = rectangle.left;
    const LONG top = rectangle.top;
    const LONG width = rectangle.right - rectangle.left;
    const LONG labelHeight = Scaled(LABEL_HEIGHT);
    if (twoLines) {
        MoveButton(left + Scaled(TWO_LEFT), top + Scaled(TWO_BUTTON_TOP));
        name_.area =
            Place(left + Scaled(TWO_LEFT), top + Scaled(TWO_NAME_TOP), width - Scaled(TWO_NAME_ROOM), labelHeight);
        value_.area = Place(left + Scaled(TWO_VALUE_LEFT), top + Scaled(TWO_VALUE_TOP), width - Scaled(TWO_VALUE_ROOM),
                            labelHeight);
    } else {
        // The button is one pixel down on every screen. Deliberate: the row is one scaled pixel higher than the button.
        MoveButton(left + Scaled(ONE_BUTTON_LEFT), top + 1);
        name_.area =
            Place(left + Scaled(ONE_NAME_LEFT), top + Scaled(ONE_TOP), width - Scaled(ONE_NAME_ROOM), labelHeight);
        value_.area = Place(rectangle.right - Scaled(ONE_VALUE_WIDTH), top + Scaled(ONE_TOP), Scaled(ONE_VALUE_WIDTH),
                            labelHeight);
    }
    WriteName();
}

void CVelmItemRow::WriteName() {
    name_.text = Width(name_.area) >= Scaled(FULL_NAME_WIDTH) ? item_.name : item_.ShortName();
}

bool CVelmItemRow::WriteValue(const CVelmLocale& locale) {
    CVelmString text = item_.ValueInList(locale);
    const int icon = FormatIcon(item_.format.displayFormat);
    const bool changed = text != value_.text || icon != button_.icon;
    value_.text = std::move(text);
    button_.icon = icon;
    return changed;
}

void CVelmItemRow::Draw(HDC dc, const CVelmBitmap& icons, COLORREF rowColor, COLORREF markColor) const {
    RECT fill = rectangle_;
    // A line of background keeps unselected rows apart.
    fill.bottom -= selected_ ? 0 : 1;
    if (selected_) {
        FillColor(dc, fill, markColor);
        InflateRect(&fill, -DisplayScale(), -DisplayScale());
    }
    FillColor(dc, fill, rowColor);
    name_.Draw(dc, DT_LEFT);
    // In a window too narrow for both, the value gives way to the button.
    CVelmLabel value = value_;
    if (value.area.top < button_.Rectangle().bottom && value.area.bottom > button_.Rectangle().top) {
        value.area.left = std::max(value.area.left, button_.Rectangle().right);
    }
    value.Draw(dc, DT_RIGHT);
    button_.Draw(dc, icons);
}

}  // namespace velm
