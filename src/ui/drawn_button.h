#pragma once

#include <windows.h>

#include "platform/text.h"
#include "ui/press_button.h"

namespace velm {

/// A press button that draws itself: an icon at the left (centered when there is no text), a text beside it, and at the
/// right a note where there is room. The fonts and the icon are not owned and outlive the button.
class CVelmDrawnButton : public CVelmPressButton {
public:
    void SetText(CVelmString text);
    void SetFont(HFONT font);

    /// Empty for none.
    void SetNote(CVelmString note, COLORREF color);
    void SetNoteFont(HFONT font) { noteFont_ = font; }

    /// ICON_SIZE square; null for none.
    void SetIcon(HICON icon);

    /// Draws a small triangle at the right that indicates a menu.
    void SetMenuSign(bool on) { menuSign_ = on; }

    /// Draws the button as selected, like the current tab.
    void SetSelected(bool on);

    const CVelmString& Text() const { return text_; }
    const CVelmString& Note() const { return note_; }
    HICON Icon() const { return icon_; }
    bool IsSelected() const { return selected_; }

    /// Draws the whole rectangle; `dc` uses the owner's client coordinates.
    void Draw(HDC dc) const;

private:
    void DrawFrame(HDC dc) const;
    int DrawIcon(HDC dc) const;
    void DrawMenuSign(HDC dc) const;

    /// Draws the note if the text keeps its whole width, and takes its room from the area.
    void DrawNote(HDC dc, HFONT textFont, RECT& area) const;

    CVelmString text_;
    CVelmString note_;
    COLORREF noteColor_ = 0;
    HFONT font_ = nullptr;
    HFONT noteFont_ = nullptr;
    HICON icon_ = nullptr;
    bool menuSign_ = false;
    bool selected_ = false;
};

}  // namespace velm
