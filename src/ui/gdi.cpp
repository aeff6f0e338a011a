#include "ui/gdi.h"

#include "platform/wide_text_win32.h"

namespace velm {

int TextWidth(HDC dc, const CVelmString& text) {
    SIZE size{};
    GetTextExtentPoint32W(dc, Wide(text), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
}

void DrawLine(HDC dc, HFONT font, COLORREF color, const CVelmString& text, RECT area, UINT format) {
    const CVelmSelect selected(dc, font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, color);
    DrawTextW(dc, Wide(text), static_cast<int>(text.size()), &area, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | format);
}

CVelmPainter::CVelmPainter(HWND window) : window_(window) {
    const HDC dc = BeginPaint(window, &paint_);
    const RECT& area = paint_.rcPaint;
    if (IsRectEmpty(&area)) {
        return;
    }
    bitmap_.reset(CreateCompatibleBitmap(dc, Width(area), Height(area)));
    memory_.reset(bitmap_ ? CreateCompatibleDC(dc) : nullptr);
    if (!memory_) {
        return;  // paint directly to the window instead
    }
    oldBitmap_ = SelectObject(memory_.get(), bitmap_.get());
    SetWindowOrgEx(memory_.get(), area.left, area.top, nullptr);
}

CVelmPainter::~CVelmPainter() {
    const RECT& area = paint_.rcPaint;
    if (memory_) {
        BitBlt(paint_.hdc, area.left, area.top, Width(area), Height(area), memory_.get(), area.left, area.top, SRCCOPY);
        SelectObject(memory_.get(), oldBitmap_);
    }
    EndPaint(window_, &paint_);
}

}  // namespace velm
