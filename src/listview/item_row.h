#pragma once

#include <windows.h>

#include "platform/locale.h"
#include "platform/text.h"
#include "ui/label.h"
#include "ui/press_button.h"

namespace velm {

class CVelmBitmap;
class CVelmItem;

/// A row's button with the icon of the item's display format.
class CVelmFormatButton : public CVelmPressButton {
public:
    void Draw(HDC dc, const CVelmBitmap& icons) const;

    int icon = -1;  ///< position in the strip of format icons, -1 for none
};

/// One row of the item list: an item, not owned, its labels and its format button.
class CVelmItemRow {
public:
    /// `owner` is the list's window; the button posts `command` to it with this row as the parameter.
    CVelmItemRow(CVelmItem& item, HWND owner, WORD command, HFONT nameFont, HFONT valueFont);

    CVelmItem& Item() const { return item_; }
    const RECT& Rectangle() const { return rectangle_; }
    const CVelmLabel& NameLabel() const { return name_; }
    const CVelmLabel& ValueLabel() const { return value_; }

    /// The value as it was last written: empty without a value, "Error" for one that cannot be computed.
    const CVelmString& ValueText() const { return value_.text; }
    CVelmFormatButton& Button() { return button_; }
    const CVelmFormatButton& Button() const { return button_; }
    bool IsSelected() const { return selected_; }
    void SetSelected(bool on) { selected_ = on; }

    /// Gives the row its rectangle and its parts their places.
    void Move(const RECT& rectangle, bool twoLines);

    /// Writes the name: the full one where there is room for it, else the short one.
    void WriteName();

    /// Writes the value's text and the format's icon. True when either changed.
    bool WriteValue(const CVelmLocale& locale);

    void Draw(HDC dc, const CVelmBitmap& icons, COLORREF rowColor, COLORREF markColor) const;

private:
    void MoveButton(LONG left, LONG top);

    CVelmItem& item_;
    bool selected_ = false;
    RECT rectangle_{};
    CVelmLabel name_;
    CVelmLabel value_;
    CVelmFormatButton button_;
    HWND owner_;
    WORD command_;
};

}  // namespace velm
