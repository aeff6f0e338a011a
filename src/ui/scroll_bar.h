#pragma once

#include <windows.h>

namespace velm {

/// How much there is to scroll through, how much of it shows and where that begins.
struct CVelmScrollState {
    int count;
    int page;
    int position;
};

/// Brings a window's scroll bar up to date (`bar` as in SetScrollInfo). One that cannot scroll goes, or stays without
/// its thumb.
void SetScrollBar(HWND window, int bar, const CVelmScrollState& state, bool stays = false);

/// The position that a request of the bar (SB_LINEDOWN and the like) asks for, `line` being one step. It may lie beyond
/// either end.
int ScrollTarget(HWND window, int bar, int request, int line);

}  // namespace velm
