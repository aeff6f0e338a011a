#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

#include "platform/text.h"

namespace velm {

/// Deleters for system handles.
struct CVelmHandleDeleter {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
    void operator()(HDC dc) const { DeleteDC(dc); }
    void operator()(HICON icon) const { DestroyIcon(icon); }
    void operator()(HMENU menu) const { DestroyMenu(menu); }
    void operator()(HACCEL table) const { DestroyAcceleratorTable(table); }
    void operator()(HMODULE module) const { FreeLibrary(module); }
};
template <class Handle>
using CVelmOwned = std::unique_ptr<std::remove_pointer_t<Handle>, CVelmHandleDeleter>;

using CVelmFont = CVelmOwned<HFONT>;
using CVelmBitmapHandle = CVelmOwned<HBITMAP>;
using CVelmPaletteHandle = CVelmOwned<HPALETTE>;
using CVelmRegion = CVelmOwned<HRGN>;
using CVelmMemoryDc = CVelmOwned<HDC>;
using CVelmIcon = CVelmOwned<HICON>;
using CVelmMenu = CVelmOwned<HMENU>;
using CVelmAccelerators = CVelmOwned<HACCEL>;
using CVelmModule = CVelmOwned<HMODULE>;

/// Selects an object into a device context and restores the old one at the end of the scope.
class CVelmSelect {
public:
    CVelmSelect(HDC dc, HGDIOBJ object) : dc_(dc), old_(SelectObject(dc, object)) {}
    ~CVelmSelect() { SelectObject(dc_, old_); }
    CVelmSelect(const CVelmSelect&) = delete;
    CVelmSelect& operator=(const CVelmSelect&) = delete;

private:
    HDC dc_;
    HGDIOBJ old_;
};

/// A window's device context outside WM_PAINT; the screen's for null.
class CVelmWindowDc {
public:
    explicit CVelmWindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
    ~CVelmWindowDc() { ReleaseDC(window_, dc_); }
    CVelmWindowDc(const CVelmWindowDc&) = delete;
    CVelmWindowDc& operator=(const CVelmWindowDc&) = delete;

    HDC Get() const { return dc_; }

private:
    HWND window_;
    HDC dc_;
};

/// A window's device context for measuring text in a font.
class CVelmTextMeasure {
public:
    CVelmTextMeasure(HWND window, HFONT font) : dc_(window), font_(dc_.Get(), font) {}

    HDC Dc() const { return dc_.Get(); }

private:
    CVelmWindowDc dc_;
    CVelmSelect font_;
};

/// Width of one line of text in the font selected.
int TextWidth(HDC dc, const CVelmString& text);

/// Draws one line of text, transparent and vertically centered; `format` has further flags such as DT_LEFT.
void DrawLine(HDC dc, HFONT font, COLORREF color, const CVelmString& text, RECT area, UINT format);

/// Fills a rectangle with one color.
inline void FillColor(HDC dc, const RECT& area, COLORREF color) {
    const COLORREF old = SetBkColor(dc, color);
    ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &area, nullptr, 0, nullptr);
    SetBkColor(dc, old);
}

inline int Width(const RECT& area) {
    return static_cast<int>(area.right - area.left);
}
inline int Height(const RECT& area) {
    return static_cast<int>(area.bottom - area.top);
}

inline RECT ClientArea(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return area;
}

/// Flicker-free painting through an off-screen bitmap of the update area, copied to the window at the end of the scope.
/// Uses the window's coordinates.
class CVelmPainter {
public:
    explicit CVelmPainter(HWND window);
    ~CVelmPainter();
    CVelmPainter(const CVelmPainter&) = delete;
    CVelmPainter& operator=(const CVelmPainter&) = delete;

    HDC Dc() const { return memory_ ? memory_.get() : paint_.hdc; }
    const RECT& UpdateArea() const { return paint_.rcPaint; }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
    CVelmBitmapHandle bitmap_;
    CVelmMemoryDc memory_;
    HGDIOBJ oldBitmap_ = nullptr;
};

}  // namespace velm
