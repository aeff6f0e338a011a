#include "ui/bitmap.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "ui/display_scale.h"

namespace velm {
namespace {

constexpr WORD PALETTE_VERSION = 0x300;
constexpr int MAX_TABLE_BITS = 8;

constexpr int MIX_EDGE = 110;

int Blended(int channel, int darkness) {
    return 255 - ((255 - channel) * darkness) / 256;
}

/// Rounds down for negative values too: a window may be left of or above the first screen.
int FloorDivide(LONG value, int divisor) {
    const LONG quotient = value / divisor;
    return static_cast<int>(value % divisor < 0 ? quotient - 1 : quotient);
}

/// A bitmap resource: a header, its color table and the pixels, as a .bmp file has them.
struct BitmapResource {
    const BITMAPINFO* info = nullptr;
    std::size_t size = 0;

    const BITMAPINFOHEADER& Header() const { return info->bmiHeader; }

    std::size_t ColorCount() const {
        if (Header().biClrUsed != 0) {
            return Header().biClrUsed;
        }
        return Header().biBitCount <= MAX_TABLE_BITS ? std::size_t{1} << Header().biBitCount : 0;
    }

    std::size_t PixelOffset() const { return Header().biSize + ColorCount() * sizeof(RGBQUAD); }

    std::size_t PixelBytes() const {
        if (Header().biSizeImage != 0) {
            return Header().biSizeImage;
        }
        const auto width = static_cast<std::size_t>(Header().biWidth);
        const auto height = static_cast<std::size_t>(std::abs(Header().biHeight));
        return (((width * Header().biBitCount + 31) / 8) & ~std::size_t{3}) * height;
    }

    bool IsWhole() const {
        return info != nullptr && size >= sizeof(BITMAPINFOHEADER) && Header().biSize >= sizeof(BITMAPINFOHEADER) &&
               Header().biSize <= size && ColorCount() <= size / sizeof(RGBQUAD) && PixelOffset() <= size;
    }
};

BitmapResource FindBitmap(UINT id) {
    const HMODULE module = GetModuleHandleW(nullptr);
    const HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(id), RT_BITMAP);
    const HGLOBAL loaded = found != nullptr ? LoadResource(module, found) : nullptr;
    if (loaded == nullptr) {
        return {};
    }
    return {static_cast<const BITMAPINFO*>(LockResource(loaded)), SizeofResource(module, found)};
}

std::vector<RGBQUAD> TintedTable(const BitmapResource& resource, COLORREF tint) {
    std::vector<RGBQUAD> table(resource.ColorCount());
    if (!table.empty()) {
        std::memcpy(table.data(), reinterpret_cast<const BYTE*>(resource.info) + resource.Header().biSize,
                    table.size() * sizeof(RGBQUAD));
    }
    for (RGBQUAD& entry : table) {
        const COLORREF tinted = TintColor(RGB(entry.rgbRed, entry.rgbGreen, entry.rgbBlue), tint);
        entry = {GetBValue(tinted), GetGValue(tinted), GetRValue(tinted), 0};
    }
    return table;
}

CVelmPaletteHandle MakePalette(const std::vector<RGBQUAD>& table) {
    if (table.empty()) {
        return nullptr;
    }
    std::vector<BYTE> buffer(sizeof(LOGPALETTE) + table.size() * sizeof(PALETTEENTRY));
    auto* palette = reinterpret_cast<LOGPALETTE*>(buffer.data());
    palette->palVersion = PALETTE_VERSION;
    palette->palNumEntries = static_cast<WORD>(table.size());
    PALETTEENTRY* entry = palette->palPalEntry;
    for (const RGBQUAD& color : table) {
        *entry++ = {color.rgbRed, color.rgbGreen, color.rgbBlue, 0};
    }
    return CVelmPaletteHandle(CreatePalette(palette));
}

/// The pixels in a DIB section with tinted colors.
CVelmBitmapHandle MakeSection(const BitmapResource& resource, const std::vector<RGBQUAD>& table) {
    std::vector<BYTE> buffer(resource.PixelOffset());
    std::memcpy(buffer.data(), resource.info, resource.Header().biSize);
    if (!table.empty()) {
        std::memcpy(buffer.data() + resource.Header().biSize, table.data(), table.size() * sizeof(RGBQUAD));
    }
    void* pixels = nullptr;
    CVelmBitmapHandle section(CreateDIBSection(CVelmWindowDc(nullptr).Get(),
                                               reinterpret_cast<const BITMAPINFO*>(buffer.data()), DIB_RGB_COLORS,
                                               &pixels, nullptr, 0));
    if (section) {
        const std::size_t available = resource.size - resource.PixelOffset();
        std::memcpy(pixels, reinterpret_cast<const BYTE*>(resource.info) + resource.PixelOffset(),
                    std::min(resource.PixelBytes(), available));
    }
    return section;
}

struct TintedBitmap {
    CVelmPaletteHandle palette;
    CVelmBitmapHandle bitmap;
};

/// Both empty for a missing or truncated resource.
TintedBitmap LoadTinted(UINT id, COLORREF tint) {
    const BitmapResource found = FindBitmap(id);
    if (!found.IsWhole()) {
        return {};
    }
    const std::vector<RGBQUAD> table = TintedTable(found, tint);
    return {MakePalette(table), MakeSection(found, table)};
}

}  // namespace

COLORREF MixColor(int amount, COLORREF color) {
    const int share = 255 - amount;
    return RGB(Blended(GetRValue(color), share), Blended(GetGValue(color), share), Blended(GetBValue(color), share));
}

COLORREF EdgeColor() {
    return MixColor(MIX_EDGE, BaseColor());
}

COLORREF TintColor(COLORREF color, COLORREF tint) {
    const int red = GetRValue(color);
    const int green = GetGValue(color);
    const int blue = GetBValue(color);
    if (red == green && green == blue) {
        return color;
    }
    const int brightness = static_cast<int>(std::sqrt((blue * blue + green * green + red * red) / 3.0));
    const int darkness = 255 - brightness;
    return RGB(Blended(GetRValue(tint), darkness), Blended(GetGValue(tint), darkness),
               Blended(GetBValue(tint), darkness));
}

CVelmBitmap::CVelmBitmap(UINT resource, bool followScale)
    : bitmap_(LoadBitmapW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource))),
      doubled_(followScale && DisplayScale() != 1) {
    TakeSize();
}

CVelmBitmap::CVelmBitmap(UINT resource, COLORREF tint, bool followScale)
    : doubled_(followScale && DisplayScale() != 1) {
    TintedBitmap tinted = LoadTinted(resource, tint);
    if (tinted.bitmap) {
        palette_ = std::move(tinted.palette);
        bitmap_ = std::move(tinted.bitmap);
    } else {
        bitmap_.reset(LoadBitmapW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource)));
    }
    TakeSize();
}

bool CVelmBitmap::Reload(UINT resource, COLORREF tint) {
    TintedBitmap tinted = LoadTinted(resource, tint);
    if (!tinted.palette || !tinted.bitmap) {
        return false;
    }
    palette_ = std::move(tinted.palette);
    bitmap_ = std::move(tinted.bitmap);
    TakeSize();
    return true;
}

void CVelmBitmap::TakeSize() {
    BITMAP data{};
    if (bitmap_ && GetObjectW(bitmap_.get(), sizeof(data), &data) != 0) {
        width_ = static_cast<int>(data.bmWidth);
        height_ = static_cast<int>(data.bmHeight);
    }
}

void CVelmBitmap::Stretch(HDC dc, const RECT& target, int sourceX, int sourceY, int sourceWidth,
                          int sourceHeight) const {
    if (!bitmap_) {
        return;
    }
    const CVelmMemoryDc source(CreateCompatibleDC(dc));
    const CVelmSelect selected(source.get(), bitmap_.get());
    const HPALETTE oldPalette = palette_ ? SelectPalette(dc, palette_.get(), FALSE) : nullptr;
    if (palette_) {
        RealizePalette(dc);
    }
    StretchBlt(dc, target.left, target.top, Width(target), Height(target), source.get(), sourceX, sourceY, sourceWidth,
               sourceHeight, SRCCOPY);
    if (oldPalette != nullptr) {
        SelectPalette(dc, oldPalette, FALSE);
    }
}

void CVelmBitmap::Draw(HDC dc, int x, int y) const {
    Stretch(dc, RECT{x, y, x + DrawnWidth(), y + DrawnHeight()}, 0, 0, width_, height_);
}

void CVelmBitmap::DrawImage(HDC dc, int index, int x, int y) const {
    Stretch(dc, RECT{x, y, x + DrawnHeight(), y + DrawnHeight()}, index * height_, 0, height_, height_);
}

void CVelmBitmap::DrawPart(HDC dc, const RECT& target, int sourceX, int sourceY) const {
    Stretch(dc, target, sourceX, sourceY, Width(target), Height(target));
}

void CVelmBitmap::DrawAtOrigin(HDC dc) const {
    DrawPart(dc, RECT{0, 0, width_, height_}, 0, 0);
}

void CVelmBitmap::DrawHandle(HDC dc, HBITMAP bitmap, int x, int y) {
    BITMAP data{};
    if (GetObjectW(bitmap, sizeof(data), &data) == 0) {
        return;
    }
    const CVelmMemoryDc source(CreateCompatibleDC(dc));
    const CVelmSelect selected(source.get(), bitmap);
    BitBlt(dc, x, y, data.bmWidth, data.bmHeight, source.get(), 0, 0, SRCCOPY);
}

void CVelmBitmap::PaintBackground(const CVelmBitmap* background, HWND window, HDC dc, RECT area) {
    if (background == nullptr || background->height_ == 0) {
        FillColor(dc, area, RGB(255, 255, 255));
        return;
    }
    RECT position{};
    GetWindowRect(window, &position);
    const int scale = background->doubled_ ? DisplayScale() : 1;
    if (scale == 2) {
        area.left = 2 * FloorDivide(area.left + position.left, 2) - position.left;
        area.top = 2 * FloorDivide(area.top + position.top, 2) - position.top;
    }
    const int sourceX = FloorDivide(area.left + position.left, scale);
    const int firstRow = FloorDivide(area.top + position.top, scale);
    const int sourceWidth = (Width(area) + scale - 1) / scale;
    int row = firstRow - background->height_ * FloorDivide(firstRow, background->height_);

    const int saved = SaveDC(dc);
    IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    for (int top = static_cast<int>(area.top); top < area.bottom; row = 0) {
        const int rest = (static_cast<int>(area.bottom) - top + scale - 1) / scale;
        const int rows = std::min(background->height_ - row, rest);
        const RECT target{area.left, top, area.left + sourceWidth * scale, top + rows * scale};
        background->Stretch(dc, target, sourceX, row, sourceWidth, rows);
        top += rows * scale;
    }
    RestoreDC(dc, saved);
}

}  // namespace velm
