#include <string>

#include "app/commands.h"
#include "app/main_frame.h"
#include "platform/wide_text_win32.h"
#include "ui/calculator_messages.h"

namespace velm {
namespace {

constexpr CVelmStringView CALCULATOR_PROGRAM = u"Tallyra.exe";
constexpr const wchar_t* CALCULATOR_MISSING =
    L"Tallyra application could not be started. Please reinstall the software to fix the problem.";
constexpr UINT ANSWER_MS = 2000;

/// Delay before looking for a started program's window; two more tries for slow machines.
constexpr DWORD START_MS = 500;
constexpr int START_TRIES = 3;

constexpr CVelmStringView HELP_PROGRAM = u"peghelp.exe";
constexpr CVelmStringView HELP_PAGE = u"file:velmora.htm#main_contents";
constexpr const wchar_t* HELP_MISSING =
    L"The help viewer could not be started. Please reinstall the software to fix the problem.";

/// Starts a program in a folder of its own; a bare name is looked for where the system looks for programs.
bool StartProgram(const CVelmString& program, const CVelmString& arguments, const CVelmString& folder) {
    std::wstring line = ToWide(u"\"" + program + u"\"" + (arguments.empty() ? u"" : u" ") + arguments);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, Wide(folder), &startup, &process)) {
        return false;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return true;
}

HWND WaitForCalculator() {
    HWND window = nullptr;
    for (int tries = 0; tries < START_TRIES && window == nullptr; ++tries) {
        Sleep(START_MS);
        window = FindWindowW(nullptr, CALCULATOR_TITLE);
    }
    return window;
}

void SendValue(HWND from, HWND to, double value) {
    COPYDATASTRUCT data{COPYDATA_VALUE, sizeof(value), &value};
    SendMessageTimeoutW(to, WM_COPYDATA, reinterpret_cast<WPARAM>(from), reinterpret_cast<LPARAM>(&data),
                        SMTO_ABORTIFHUNG, ANSWER_MS, nullptr);
}

}  // namespace

void OpenCalculator(CVelmFrame& frame, WORD) {
    HWND window = FindWindowW(nullptr, CALCULATOR_TITLE);
    if (window != nullptr) {
        if (IsIconic(window)) {
            ShowWindowAsync(window, SW_RESTORE);
        }
        SetForegroundWindow(window);
    } else {
        const CVelmString& folder = frame.Program().programFolder;
        if (!StartProgram(folder + CVelmString(CALCULATOR_PROGRAM), {}, folder)) {
            MessageBoxW(frame.Handle(), CALCULATOR_MISSING, L"Calculator", MB_OK | MB_ICONSTOP);
            return;
        }
        window = WaitForCalculator();
    }
    if (window != nullptr && HasCurrentValue(frame)) {
        SendValue(frame.Handle(), window, frame.CurrentItem()->value);
    }
}

void ShowHelp(CVelmFrame& frame, WORD) {
    const CVelmString& folder = frame.Program().programFolder;
    const CVelmString page(HELP_PAGE);
    if (!StartProgram(folder + CVelmString(HELP_PROGRAM), page, folder) &&
        !StartProgram(CVelmString(HELP_PROGRAM), page, folder)) {
        MessageBoxW(frame.Handle(), HELP_MISSING, L"Help", MB_OK | MB_ICONSTOP);
    }
}

}  // namespace velm
