#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

/// A line of text within a rectangle. The font is not owned and outlives the label.
struct CVelmLabel {
    CVelmString text;
    HFONT font = nullptr;
    RECT area{};

    /// Black, transparent, vertically centred; `format` is DT_LEFT or DT_RIGHT. A text that does not fit is shortened
    /// from its end, with "~" for its last character.
    void Draw(HDC dc, UINT format) const;
};

/// The text, shortened until its width in the context's font is within `room` pixels.
CVelmString ShortenText(HDC dc, const CVelmString& text, int room);

}  // namespace velm
