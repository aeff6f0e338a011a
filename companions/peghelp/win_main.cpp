#include <windows.h>

#include "peghelp/help_window.h"
#include "platform/program_folder.h"
#include "platform/services.h"
#include "platform/wide_text_win32.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR commandLine, int showCommand) {
    SetProcessDPIAware();
    velm::CVelmHelpWindow window(velm::SystemServices(), velm::ProgramFolder());
    if (!window.Open(velm::ParseHelpTarget(velm::FromWide(commandLine)), showCommand)) {
        return 1;
    }
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
            DestroyWindow(window.Handle());
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}
