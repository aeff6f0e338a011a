#pragma once

#include <windows.h>

#include "ui/gdi.h"

namespace velm {

/// The display scale s: 2 when the screen reports 192 logical pixels per inch, otherwise 1. The screen is asked once.
int DisplayScale();

/// A length given in pixels of an ordinary screen, in pixels of this one.
inline int Scaled(int length) {
    return length * DisplayScale();
}

/// Icons of buttons and tools are so many pixels of an ordinary screen square.
constexpr int ICON_SIZE = 16;

/// "Tahoma", `height` pixels of an ordinary screen from the top of the cell to its bottom, normal or bold.
CVelmFont CreateProgramFont(int height, bool bold);

/// An icon of the program's resources, `size` pixels of an ordinary screen square; null when there is none.
CVelmIcon LoadProgramIcon(UINT id, int size = ICON_SIZE);

/// The color that rows and bitmaps take their tint from: the system's active caption.
COLORREF BaseColor();

}  // namespace velm
