#pragma once

#include <windows.h>

namespace velm {

/// Size of the content, size of its visible part, and that part's start.
struct CVelmScrollState {
    int count;
    int page;
    int position;
};

/// Updates a window's scroll bar (`bar` as in SetScrollInfo). When there is nothing to scroll it is hidden or has no
/// thumb.
void SetScrollBar(HWND window, int bar, const CVelmScrollState& state, bool stays = false);

/// The position after a scroll request (SB_LINEDOWN and the like) with steps of `line`; may be out of range.
int ScrollTarget(HWND window, int bar, int request, int line);

}  // namespace velm
