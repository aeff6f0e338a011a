#include "ui/single_instance.h"

namespace velm {
namespace {

constexpr int TRIES = 20;
constexpr DWORD TRY_MS = 100;

}  // namespace

CVelmSingleInstance::CVelmSingleInstance(const wchar_t* name, const wchar_t* frameClass)
    : frameClass_(frameClass),
      mutex_(CreateMutexW(nullptr, FALSE, name)),
      first_(GetLastError() != ERROR_ALREADY_EXISTS) {}

CVelmSingleInstance::~CVelmSingleInstance() {
    if (mutex_ != nullptr) {
        CloseHandle(mutex_);
    }
}

void CVelmSingleInstance::ShowFirst() const {
    for (int i = 0; i < TRIES; ++i) {
        if (const HWND window = FindWindowW(frameClass_, nullptr)) {
            if (IsIconic(window)) {
                ShowWindow(window, SW_RESTORE);
            }
            // A dialog of the first copy, not the frame behind it, is what the user was at.
            SetForegroundWindow(GetLastActivePopup(window));
            return;
        }
        Sleep(TRY_MS);
    }
}

}  // namespace velm
