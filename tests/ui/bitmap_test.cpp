#include "ui/bitmap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>

#include "resource.h"
#include "support/picture.h"
#include "test_resource.h"
#include "ui/display_scale.h"

namespace velm::test {
namespace {

constexpr COLORREF WHITE = RGB(255, 255, 255);
constexpr COLORREF TINT = RGB(0, 100, 200);
constexpr COLORREF BEFORE = RGB(0, 77, 77);

Picture Drawn(int width, int height, const std::function<void(HDC)>& draw) {
    return Picture::Drawn(width, height, BEFORE, draw);
}

Picture WholePicture(const CVelmBitmap& bitmap) {
    return Drawn(bitmap.PixelWidth(), bitmap.PixelHeight(), [&bitmap](HDC dc) { bitmap.DrawAtOrigin(dc); });
}

/// Each pixel of the picture is the color that the function gives for its place.
void ExpectPixels(const Picture& picture, const std::function<COLORREF(int, int)>& color) {
    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            ASSERT_EQ(picture.At(x, y), color(x, y)) << "at " << x << ", " << y;
        }
    }
}

TEST(Bitmap, MixesAndTintsColors) {
    EXPECT_EQ(MixColor(255, RGB(0, 128, 255)), WHITE);
    EXPECT_EQ(MixColor(0, RGB(0, 0, 0)), RGB(1, 1, 1));
    EXPECT_EQ(MixColor(0, WHITE), WHITE);
    // 255 - 255 x 115 / 256, 255 - 155 x 115 / 256 and 255 - 55 x 115 / 256, each cut to a whole number before the
    // subtraction.
    EXPECT_EQ(MixColor(140, TINT), RGB(255 - 114, 255 - 69, 255 - 24));
    for (const BYTE gray : {BYTE{0}, BYTE{1}, BYTE{128}, BYTE{255}}) {
        EXPECT_EQ(TintColor(RGB(gray, gray, gray), TINT), RGB(gray, gray, gray));
    }
    // Red: brightness sqrt(255 x 255 / 3) = 147, darkness 108.
    EXPECT_EQ(TintColor(RGB(255, 0, 0), TINT), RGB(255 - 255 * 108 / 256, 255 - 155 * 108 / 256, 255 - 55 * 108 / 256));
    EXPECT_EQ(TintColor(RGB(0, 0, 1), RGB(0, 0, 0)), RGB(1, 1, 1)) << "the darkest color that is no gray";
}

TEST(Bitmap, TakesTheTintPixelForPixel) {
    const Picture plain = WholePicture(CVelmBitmap(IDB_FORMAT_ICONS, false));
    const Picture tinted = WholePicture(CVelmBitmap(IDB_FORMAT_ICONS, TINT, false));
    ASSERT_EQ(plain.Width(), 8 * 16);
    ExpectPixels(tinted, [&](int x, int y) { return TintColor(plain.At(x, y), TINT); });
    EXPECT_NE(tinted, plain) << "the format icons have no color to tint";
    const CVelmBitmap icons(IDB_FORMAT_ICONS, false);
    std::vector<Picture> pictures;
    for (int i = 0; i < 8; ++i) {
        const Picture picture = Drawn(16, 16, [&](HDC dc) { icons.DrawPart(dc, {0, 0, 16, 16}, i * 16, 0); });
        EXPECT_EQ(std::count(pictures.begin(), pictures.end(), picture), 0) << "icon " << i << " is like another";
        pictures.push_back(picture);
    }
}

TEST(Bitmap, WithoutAColorTableIsNotTintedAndNotReloaded) {
    CVelmBitmap bitmap(IDB_TEST_TRUE_COLOR, TINT, false);
    const Picture before = WholePicture(bitmap);
    ExpectPixels(before, [](int x, int y) {
        return y == 0 ? (x == 0 ? RGB(255, 0, 0) : RGB(0, 255, 0)) : (x == 0 ? RGB(0, 0, 255) : WHITE);
    });
    EXPECT_FALSE(bitmap.Reload(IDB_TEST_TRUE_COLOR, RGB(9, 9, 9)));
    EXPECT_FALSE(bitmap.Reload(12345, TINT));
    EXPECT_EQ(WholePicture(bitmap), before);
    EXPECT_TRUE(bitmap.Reload(IDB_TEST_FOUR_COLORS, RGB(255, 0, 0)));
    EXPECT_EQ(bitmap.PixelWidth(), 4);
    EXPECT_EQ(WholePicture(bitmap).At(2, 0), TintColor(RGB(255, 0, 0), RGB(255, 0, 0)));
    const CVelmBitmap missing(12345, TINT, true);
    EXPECT_EQ(missing.PixelWidth(), 0);
    EXPECT_EQ(missing.PixelHeight(), 0);
    EXPECT_EQ(Drawn(4, 4, [&missing](HDC dc) { missing.Draw(dc, 0, 0); }), Drawn(4, 4, [](HDC) {}));
}

TEST(Bitmap, FollowsTheScreensScaleWhenAsked) {
    const CVelmBitmap following(IDB_TEST_FOUR_COLORS, TINT, true);
    const CVelmBitmap fixed(IDB_TEST_FOUR_COLORS, TINT, false);
    const std::array<COLORREF, 4> colors = {RGB(0, 0, 0), RGB(128, 128, 128), TintColor(RGB(255, 0, 0), TINT), WHITE};
    const auto check = [&](int scale, const std::function<void(HDC)>& draw) {
        ExpectPixels(Drawn(20, 10, draw), [&](int x, int y) {
            const bool inside = x >= 3 && x < 3 + 4 * scale && y >= 2 && y < 2 + scale;
            return inside ? colors[static_cast<std::size_t>((x - 3) / scale)] : BEFORE;
        });
    };
    EXPECT_EQ(following.DrawnWidth(), 4 * DisplayScale());
    EXPECT_EQ(fixed.DrawnWidth(), 4);
    check(DisplayScale(), [&](HDC dc) { following.Draw(dc, 3, 2); });
    check(1, [&](HDC dc) { fixed.Draw(dc, 3, 2); });
    check(1, [&](HDC dc) { CVelmBitmap::DrawHandle(dc, following.Handle(), 3, 2); });
}

TEST(Bitmap, BackgroundStaysInPlaceOnTheScreenWhereverTheWindowLies) {
    const HWND window = CreateWindowW(L"Static", L"", WS_POPUP, 0, 0, 200, 100, nullptr, nullptr, nullptr, nullptr);
    const RECT area{3, 1, 20, 24};
    for (const bool follow : {false, true}) {
        const CVelmBitmap background(IDB_TEST_BACKGROUND, follow);
        const int scale = background.IsDoubled() ? 2 : 1;
        for (const POINT place : {POINT{0, 0}, POINT{1, 1}, POINT{3, 2}, POINT{2, 7}}) {
            SCOPED_TRACE(place.x);
            SetWindowPos(window, nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
            // Doubled rows begin at even places of the screen, so the first pixel may lie one before the rectangle.
            const int left = scale == 2 ? ((area.left + place.x) / 2) * 2 - place.x : area.left;
            const int top = scale == 2 ? ((area.top + place.y) / 2) * 2 - place.y : area.top;
            const auto paint = [&](HDC dc) { CVelmBitmap::PaintBackground(&background, window, dc, area); };
            ExpectPixels(Drawn(30, 30, paint), [&](int x, int y) -> COLORREF {
                const int column = (x + place.x) / scale;
                const int level = ((y + place.y) / scale % 5 + 1) * 10 + (column % 4 == 0 ? 1 : 0);
                const bool inside = x >= left && x < area.right && y >= top && y < area.bottom;
                return inside ? RGB(level, level, level) : BEFORE;
            });
        }
    }
    const auto paintNone = [&](HDC dc) { CVelmBitmap::PaintBackground(nullptr, window, dc, area); };
    ExpectPixels(Drawn(30, 30, paintNone), [&](int x, int y) { return PtInRect(&area, {x, y}) ? WHITE : BEFORE; });
    DestroyWindow(window);
}

}  // namespace
}  // namespace velm::test
