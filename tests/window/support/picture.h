#pragma once

#include <windows.h>

#include <functional>
#include <vector>

namespace velm::test {

/// The pixels of a window's client area, or of a device context, as they were at one moment.
class Picture {
public:
    static Picture OfWindow(HWND window);
    static Picture OfDc(HDC dc, int width, int height);

    /// What drawing puts on a bitmap that was of one color before.
    static Picture Drawn(int width, int height, COLORREF before, const std::function<void(HDC)>& draw);

    int Width() const { return width_; }
    int Height() const { return height_; }

    /// CLR_INVALID outside.
    COLORREF At(int x, int y) const;

    /// How many pixels of a rectangle have the color, or have another.
    int Count(const RECT& area, COLORREF color) const;
    bool IsAll(const RECT& area, COLORREF color) const;

    bool operator==(const Picture&) const = default;

private:
    int width_ = 0;
    int height_ = 0;
    std::vector<COLORREF> pixels_;
};

}  // namespace velm::test
