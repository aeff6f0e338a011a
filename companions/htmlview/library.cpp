#include <windows.h>

#include "htmlview/display_control.h"
#include "ui/display_messages.h"

namespace {

HINSTANCE library = nullptr;  // set once by the loader, before any other entry

}  // namespace

extern "C" {

/// Ordinal 1. The program's instance is not needed: the class belongs to the library.
BOOL WINAPI InitHTMLControl(HINSTANCE /*program*/) {
    return velm::HtmlDisplay::Register(library) ? TRUE : FALSE;
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        library = instance;
        DisableThreadLibraryCalls(instance);
    } else if (reason == DLL_PROCESS_DETACH) {
        UnregisterClassW(velm::DISPLAY_CLASS, instance);  // its procedure goes with the library
    }
    return TRUE;
}
}
