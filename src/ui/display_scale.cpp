#include "ui/display_scale.h"

namespace velm {
namespace {

constexpr int SCALE_TWO_DPI = 192;

int AskScreen() {
    return GetDeviceCaps(CVelmWindowDc(nullptr).Get(), LOGPIXELSX) == SCALE_TWO_DPI ? 2 : 1;
}

}  // namespace

int DisplayScale() {
    static const int scale = AskScreen();
    return scale;
}

CVelmFont CreateProgramFont(int height, bool bold) {
    return CVelmFont(CreateFontW(Scaled(height), 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                                 DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                 DEFAULT_PITCH | FF_DONTCARE, L"Tahoma"));
}

CVelmIcon LoadProgramIcon(UINT id, int size) {
    return CVelmIcon(static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_ICON,
                                                   Scaled(size), Scaled(size), LR_DEFAULTCOLOR)));
}

COLORREF BaseColor() {
    return GetSysColor(COLOR_ACTIVECAPTION);
}

}  // namespace velm
