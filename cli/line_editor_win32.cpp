#include "line_editor.h"

#include <windows.h>

#include <array>

#include "platform/terminal.h"
#include "platform/wide_text_win32.h"

namespace velm {

namespace {

constexpr wchar_t CTRL_D = 4;

/// Windows ends the program at Ctrl+C unless a handler says that it is taken care of.
BOOL WINAPI TakeCtrlC(DWORD event) {
    return event == CTRL_C_EVENT ? TRUE : FALSE;
}

/// The console edits lines and recalls earlier ones by itself, for as long as its window is open.
class CVelmConsoleLines : public CVelmLineEditor {
public:
    explicit CVelmConsoleLines(std::string prompt) : prompt_(std::move(prompt)) {
        SetConsoleCtrlHandler(TakeCtrlC, TRUE);
    }
    ~CVelmConsoleLines() override { SetConsoleCtrlHandler(TakeCtrlC, FALSE); }
    CVelmConsoleLines(const CVelmConsoleLines&) = delete;
    CVelmConsoleLines& operator=(const CVelmConsoleLines&) = delete;

    std::optional<std::string> ReadLine() override {
        WriteStandardOutput(prompt_);
        std::wstring line;
        do {
            std::array<wchar_t, 4096> typed;
            CONSOLE_READCONSOLE_CONTROL wake{sizeof wake, 0, 1UL << CTRL_D, 0};
            DWORD count = 0;
            SetLastError(ERROR_SUCCESS);
            if (ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), typed.data(), static_cast<DWORD>(typed.size()), &count,
                             &wake) == 0) {
                return std::nullopt;
            }
            if (count == 0) {
                WriteStandardOutput("\n");
                return GetLastError() == ERROR_OPERATION_ABORTED ? std::optional<std::string>("") : std::nullopt;
            }
            line.append(typed.data(), count);
        } while (line.find_first_of(L"\n\x04\x1A") == std::wstring::npos);
        // Ctrl+D, and Ctrl+Z with Enter behind it, end the input on a line of their own.
        if (line.front() == CTRL_D || line.front() == L'\x1A') {
            return std::nullopt;
        }
        line.resize(line.find_first_of(L"\r\n\x04\x1A"));
        return ToUtf8(FromWide(line));
    }

private:
    std::string prompt_;
};

}  // namespace

std::unique_ptr<CVelmLineEditor> OpenLineEditor(const std::string& prompt, const CVelmString&, CompleteFunction) {
    return std::make_unique<CVelmConsoleLines>(prompt);
}

}  // namespace velm
