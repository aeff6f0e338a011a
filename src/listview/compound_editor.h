#pragma once

#include <windows.h>

#include <array>

#include "formats/value_format.h"
#include "platform/text.h"
#include "ui/edit_box.h"
#include "ui/gdi.h"
#include "ui/window_class.h"

namespace velm {

class CVelmCompoundEditor;

/// The edit box of one part: digits and one decimal point.
class CVelmPartBox : public CVelmEditBox {
public:
    CVelmCompoundEditor* owner = nullptr;
    int position = 0;

protected:
    bool OnKeyDown(WPARAM key) override;
    bool OnChar(wchar_t unit) override;
    bool OnPaste(const CVelmString& text) override;

private:
    bool IsCaretAt(bool end) const;
    bool HasPointOutsideSelection() const;
};

/// A value typed in parts, such as feet and inches: a box for each part with its label behind it, a minus sign before
/// them. Its parent gets EN_CHANGE of IDC_VALUE_EDIT for every change, also of its own making, and IDC_ACCEPT for Enter
/// in the last part.
class CVelmCompoundEditor : public CVelmWindow {
public:
    CVelmCompoundEditor();

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    /// Gives the editor the parts of an item's format; all of them empty.
    void SetParts(const CVelmValueFormat& format);

    /// Shows a value, or empty parts for NaN and for one whose parts cannot be written in digits alone.
    void SetValue(const CVelmValueFormat& format, double value);

    /// "[5 3]" or "-[5 3]", as a typed value is written; empty when every part is.
    CVelmString Text() const;

    /// Flips the sign of the whole value.
    void FlipSign();

    /// Puts the caret into a part, everything in it selected. False when there is no such part.
    bool EnterPart(int position);

    /// To the part after or before the one with the focus; false at the end.
    bool MoveWithin(bool forward);
    void Accept() const;

    /// The part with the focus; -1 when none has it.
    int FocusedPart() const;
    const CVelmPartBox& Part(int position) const { return parts_[static_cast<std::size_t>(position)]; }
    void SetNegative(bool negative);

private:
    bool CreateParts();
    void Layout();
    void Paint();
    void NotifyChange() const;

    std::array<CVelmPartBox, COMPOUND_PARTS> parts_;
    std::array<CVelmString, COMPOUND_PARTS> labels_;
    std::array<RECT, COMPOUND_PARTS> labelAreas_{};
    int count_ = 0;
    bool negative_ = false;
    CVelmFont font_;
};

}  // namespace velm
