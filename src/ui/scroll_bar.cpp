#include "ui/scroll_bar.h"

#include <algorithm>

namespace velm {

void SetScrollBar(HWND window, int bar, const CVelmScrollState& state, bool stays) {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | (stays ? SIF_DISABLENOSCROLL : 0U);
    info.nMax = std::max(0, state.count - 1);
    info.nPage = static_cast<UINT>(state.page);
    info.nPos = state.position;
    SetScrollInfo(window, bar, &info, TRUE);
}

int ScrollTarget(HWND window, int bar, int request, int line) {
    // The message carries only 16 bits of the thumb's position.
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_ALL;
    GetScrollInfo(window, bar, &info);
    const int page = static_cast<int>(info.nPage);
    switch (request) {
        case SB_LINEUP:
            return info.nPos - line;
        case SB_LINEDOWN:
            return info.nPos + line;
        case SB_PAGEUP:
            return info.nPos - page;
        case SB_PAGEDOWN:
            return info.nPos + page;
        case SB_THUMBPOSITION:
        case SB_THUMBTRACK:
            return info.nTrackPos;
        case SB_TOP:
            return info.nMin;
        case SB_BOTTOM:
            return info.nMax;
        default:
            return info.nPos;
    }
}

}  // namespace velm
