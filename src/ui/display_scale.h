#pragma once

#include <windows.h>

#include "ui/gdi.h"

namespace velm {

/// The display scale: 2 when the screen reports 192 logical pixels per inch, otherwise 1. Cached.
int DisplayScale();

/// Converts a length from pixels at scale 1 to pixels of this screen.
inline int Scaled(int length) {
    return length * DisplayScale();
}

/// Edge of the icons of buttons and tools, in pixels at scale 1.
constexpr int ICON_SIZE = 16;

/// "Tahoma" with a cell height of `height` pixels at scale 1, normal or bold.
CVelmFont CreateProgramFont(int height, bool bold);

/// An icon resource, `size` pixels square at scale 1; null when there is none.
CVelmIcon LoadProgramIcon(UINT id, int size = ICON_SIZE);

/// The color that rows and bitmaps are tinted with: the system's active caption.
COLORREF BaseColor();

}  // namespace velm
