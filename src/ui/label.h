#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

/// A line of text within a rectangle. The font is not owned and outlives the label.
struct CVelmLabel {
    CVelmString text;
    HFONT font = nullptr;
    RECT area{};

    /// Black, transparent, vertically centered; `format` is DT_LEFT or DT_RIGHT. A text that does not fit is shortened
    /// and ends in "~".
    void Draw(HDC dc, UINT format) const;
};

/// The text, shortened to `room` pixels in the context's font.
CVelmString ShortenText(HDC dc, const CVelmString& text, int room);

}  // namespace velm
