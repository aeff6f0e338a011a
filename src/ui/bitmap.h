#pragma once

#include <windows.h>

#include "ui/gdi.h"

namespace velm {

/// A light shade of a color: each channel k becomes 255 - ((255 - k) x (255 - amount)) / 256, `amount` from 0 to 255.
/// Deliberate: the division by 256 lifts black to (1, 1, 1) even for amount 0.
COLORREF MixColor(int amount, COLORREF color);

/// Lightening of the item list's rows.
constexpr int MIX_ROW = 140;

/// The color of the edges of buttons and panels, and of the faces of pressed buttons.
COLORREF EdgeColor();

/// Tints a color table entry: grays do not change, every other color takes the tint's hue at its own brightness.
COLORREF TintColor(COLORREF color, COLORREF tint);

/// A bitmap of the program's resources, tinted when it has a color table.
class CVelmBitmap {
public:
    /// With `followScale` the bitmap is drawn at twice its size at display scale 2.
    CVelmBitmap(UINT resource, bool followScale);
    CVelmBitmap(UINT resource, COLORREF tint, bool followScale);
    virtual ~CVelmBitmap() = default;
    CVelmBitmap(const CVelmBitmap&) = delete;
    CVelmBitmap& operator=(const CVelmBitmap&) = delete;

    /// Reloads with another tint. False, with the old bitmap kept, unless both bitmap and palette could be created, so
    /// always for a bitmap without a color table.
    bool Reload(UINT resource, COLORREF tint);

    /// Stretched to the drawn size.
    void Draw(HDC dc, int x, int y) const;

    /// One square image of a strip of them, stretched as Draw does.
    void DrawImage(HDC dc, int index, int x, int y) const;

    /// The part at a source offset, as large as `target`, unscaled.
    void DrawPart(HDC dc, const RECT& target, int sourceX, int sourceY) const;

    /// The whole bitmap at the origin, unscaled.
    void DrawAtOrigin(HDC dc) const;

    /// A bare bitmap at a point, unscaled.
    static void DrawHandle(HDC dc, HBITMAP bitmap, int x, int y);

    /// Fills a rectangle of a window with rows of `background`, aligned to the screen rather than the window; with
    /// white where `background` is null or has no bitmap. The bitmap is as wide as the screen.
    static void PaintBackground(const CVelmBitmap* background, HWND window, HDC dc, RECT area);

    HBITMAP Handle() const { return bitmap_.get(); }

    /// Unscaled size; 0 when nothing was loaded.
    int PixelWidth() const { return width_; }
    int PixelHeight() const { return height_; }
    bool IsDoubled() const { return doubled_; }
    int DrawnWidth() const { return doubled_ ? width_ * 2 : width_; }
    int DrawnHeight() const { return doubled_ ? height_ * 2 : height_; }

private:
    void TakeSize();
    void Stretch(HDC dc, const RECT& target, int sourceX, int sourceY, int sourceWidth, int sourceHeight) const;

    CVelmBitmapHandle bitmap_;
    CVelmPaletteHandle palette_;
    int width_ = 0;
    int height_ = 0;
    bool doubled_ = false;
};

}  // namespace velm
