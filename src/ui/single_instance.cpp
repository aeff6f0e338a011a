#include "ui/single_instance.h"

#include <windows.h>

namespace velm {
namespace {

constexpr int TRIES = 20;
constexpr DWORD TRY_MS = 100;

}  // namespace

bool IsOnlyInstance(const wchar_t* name, const wchar_t* frameClass) {
    CreateMutexW(nullptr, FALSE, name);  // the system closes it when the program ends
    if (GetLastError() != ERROR_ALREADY_EXISTS) {
        return true;
    }
    HWND window = FindWindowW(frameClass, nullptr);
    for (int i = 1; window == nullptr && i < TRIES; ++i) {
        Sleep(TRY_MS);
        window = FindWindowW(frameClass, nullptr);
    }
    if (window != nullptr) {
        if (IsIconic(window)) {
            ShowWindow(window, SW_RESTORE);
        }
        // Activate the first instance's dialog, if any, rather than the frame behind it.
        SetForegroundWindow(GetLastActivePopup(window));
    }
    return false;
}

}  // namespace velm
