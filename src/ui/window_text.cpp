#include "ui/window_text.h"

#include <array>

#include "platform/wide_text_win32.h"

namespace velm {

CVelmString WindowText(HWND window) {
    const int length = GetWindowTextLengthW(window);
    if (length <= 0) {
        return {};
    }
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    const int copied = GetWindowTextW(window, text.data(), length + 1);
    text.resize(static_cast<std::size_t>(copied));
    return FromWide(text);
}

CVelmString LoadText(UINT id) {
    std::array<wchar_t, 255> buffer{};
    const int length = LoadStringW(GetModuleHandleW(nullptr), id, buffer.data(), static_cast<int>(buffer.size()));
    return FromWide({buffer.data(), static_cast<std::size_t>(length)});
}

}  // namespace velm
