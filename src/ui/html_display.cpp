#include "ui/html_display.h"

#include "platform/wide_text_win32.h"
#include "resource.h"
#include "ui/display_messages.h"
#include "ui/gdi.h"

namespace velm {
namespace {

constexpr const char16_t* LIBRARY_FILE = u"htmlview.dll";

}  // namespace

bool CVelmHtmlLibrary::Load() {
    if (module_) {
        return true;
    }
    module_.reset(LoadLibraryW(Wide(folder_ + LIBRARY_FILE)));
    if (!module_) {
        return false;
    }
    const auto init = reinterpret_cast<InitHtmlControl>(
        reinterpret_cast<void*>(GetProcAddress(module_.get(), MAKEINTRESOURCEA(INIT_HTML_CONTROL_ORDINAL))));
    if (init == nullptr || !init(GetModuleHandleW(nullptr))) {
        module_.reset();
    }
    return module_ != nullptr;
}

HWND CreateHtmlControl(CVelmHtmlLibrary& library, HWND parent, const RECT& place) {
    if (!library.Load()) {
        return nullptr;
    }
    const HWND window =
        CreateWindowExW(0, DISPLAY_CLASS, L"HTML", WS_CHILD | WS_TABSTOP | WS_VISIBLE, static_cast<int>(place.left),
                        static_cast<int>(place.top), Width(place), Height(place), parent,
                        reinterpret_cast<HMENU>(IDC_HTML), GetModuleHandleW(nullptr), nullptr);
    if (window != nullptr) {
        SendMessageW(window, DTM_ENABLESHRINK, TRUE, 0);
        PostMessageW(window, DTM_ENABLESHRINK, TRUE, 0);
    }
    return window;
}

}  // namespace velm
