#include <windows.h>

#include <array>

#include "platform/system_error.h"
#include "platform/wide_text_win32.h"

namespace velm {

CVelmString SystemErrorText(std::int32_t status) {
    std::array<wchar_t, 512> text{};
    // In one line, without the system's trailing line end.
    constexpr DWORD FLAGS = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    FormatMessageW(FLAGS, nullptr, static_cast<DWORD>(status), 0, text.data(), static_cast<DWORD>(text.size()),
                   nullptr);
    return FromWide(text.data());
}

CVelmString LastErrorText() {
    return SystemErrorText(static_cast<std::int32_t>(GetLastError()));
}

}  // namespace velm
