#include "support/picture.h"

#include "ui/gdi.h"

namespace velm::test {

Picture Picture::OfDc(HDC dc, int width, int height) {
    return Drawn(width, height, 0, [&](HDC memory) { BitBlt(memory, 0, 0, width, height, dc, 0, 0, SRCCOPY); });
}

Picture Picture::Drawn(int width, int height, COLORREF before, const std::function<void(HDC)>& draw) {
    Picture picture;
    const HDC dc = GetDC(nullptr);
    const CVelmBitmapHandle bitmap(CreateCompatibleBitmap(dc, width, height));
    const CVelmMemoryDc memory(CreateCompatibleDC(dc));
    {
        const CVelmSelect select(memory.get(), bitmap.get());
        FillColor(memory.get(), {0, 0, width, height}, before);
        draw(memory.get());
    }
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    picture.pixels_.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    GetDIBits(dc, bitmap.get(), 0, static_cast<UINT>(height), picture.pixels_.data(), &info, DIB_RGB_COLORS);
    ReleaseDC(nullptr, dc);
    for (COLORREF& pixel : picture.pixels_) {
        pixel = RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
    }
    picture.width_ = width;
    picture.height_ = height;
    return picture;
}

Picture Picture::OfWindow(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    const HDC dc = GetDC(window);
    const Picture picture = OfDc(dc, static_cast<int>(area.right), static_cast<int>(area.bottom));
    ReleaseDC(window, dc);
    return picture;
}

COLORREF Picture::At(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        return CLR_INVALID;
    }
    return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
}

int Picture::Count(const RECT& area, COLORREF color) const {
    int count = 0;
    for (int y = static_cast<int>(area.top); y < area.bottom; ++y) {
        for (int x = static_cast<int>(area.left); x < area.right; ++x) {
            count += At(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

bool Picture::IsAll(const RECT& area, COLORREF color) const {
    return Count(area, color) == velm::Width(area) * velm::Height(area);
}

}  // namespace velm::test
