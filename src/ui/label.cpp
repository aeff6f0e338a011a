#include "ui/label.h"

#include <algorithm>

#include "platform/wide_text_win32.h"
#include "ui/display_scale.h"
#include "ui/gdi.h"

namespace velm {
namespace {

constexpr int LABEL_MARGIN = 2;
constexpr int LABEL_SLACK = 3;  // px of overflow tolerated before shortening
constexpr COLORREF TEXT_COLOR = RGB(0, 0, 0);

}  // namespace

CVelmString ShortenText(HDC dc, const CVelmString& text, int room) {
    const int allowed = std::max(0, room) + Scaled(LABEL_SLACK);
    // Cut far overflow in one step, so that a very long text is not measured over and over.
    int fits = 0;
    SIZE size{};
    GetTextExtentExPointW(dc, Wide(text), static_cast<int>(text.size()), allowed, &fits, nullptr, &size);
    constexpr std::size_t BEYOND = 4;
    CVelmString shortened = text.substr(0, static_cast<std::size_t>(fits) + BEYOND);
    if (shortened.size() < text.size()) {
        shortened.back() = u'~';
    }
    while (!shortened.empty() && TextWidth(dc, shortened) > allowed) {
        shortened.pop_back();
        if (shortened.size() > 1) {
            shortened.back() = u'~';
        }
    }
    return shortened;
}

void CVelmLabel::Draw(HDC dc, UINT format) const {
    RECT inside = area;
    InflateRect(&inside, -Scaled(LABEL_MARGIN), 0);
    if (text.empty() || inside.left >= inside.right) {
        return;
    }
    const CVelmSelect selectedFont(dc, font);
    DrawLine(dc, font, TEXT_COLOR, ShortenText(dc, text, Width(inside)), inside, DT_NOCLIP | format);
}

}  // namespace velm
