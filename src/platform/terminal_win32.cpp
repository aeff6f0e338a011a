#include <windows.h>
// after windows.h, which it needs
#include <shellapi.h>

#include <algorithm>
#include <memory>

#include "platform/terminal.h"
#include "platform/wide_text_win32.h"

namespace velm {

namespace {

/// A console would interpret the bytes in its own code page, so it gets UTF-16 instead.
bool WriteConsoleText(HANDLE console, std::string_view bytes) {
    const std::wstring text = ToWide(FromUtf8(bytes));
    for (std::size_t done = 0; done < text.size();) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min<std::size_t>(text.size() - done, 8192));
        if (WriteConsoleW(console, text.data() + done, count, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        done += written;
    }
    return true;
}

bool IsConsole(DWORD which) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(which), &mode) != 0;
}

bool WriteAll(DWORD which, std::string_view bytes) {
    HANDLE handle = GetStdHandle(which);
    if (IsConsole(which)) {
        return WriteConsoleText(handle, bytes);
    }
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 20));
        if (WriteFile(handle, bytes.data(), count, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        bytes.remove_prefix(written);
    }
    return true;
}

}  // namespace

std::vector<std::string> CommandLineArguments(int, const char* const*) {
    struct Free {
        void operator()(LPWSTR* memory) const { LocalFree(memory); }
    };
    int count = 0;
    const std::unique_ptr<LPWSTR, Free> words(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; words && i < count; ++i) {
        arguments.push_back(ToUtf8(FromWide(words.get()[i])));
    }
    return arguments;
}

std::optional<CVelmString> EnvironmentVariable(const CVelmString& name) {
    const std::wstring wideName = ToWide(name);
    std::wstring value;
    for (DWORD size = GetEnvironmentVariableW(wideName.c_str(), nullptr, 0); size > value.size();) {
        value.resize(size);
        size = GetEnvironmentVariableW(wideName.c_str(), value.data(), size);
        if (size < value.size()) {
            value.resize(size);
            break;
        }
    }
    return value.empty() ? std::nullopt : std::optional(FromWide(value));
}

std::int64_t ReadStandardInput(void* buffer, std::size_t count) {
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(count, 1U << 20));
    if (ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, wanted, &got, nullptr) != 0) {
        return got;
    }
    return GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;  // the writer has closed its end
}

bool WriteStandardOutput(std::string_view bytes) {
    return WriteAll(STD_OUTPUT_HANDLE, bytes);
}

bool WriteStandardError(std::string_view bytes) {
    return WriteAll(STD_ERROR_HANDLE, bytes);
}

bool StandardInputIsTerminal() {
    return IsConsole(STD_INPUT_HANDLE);
}

bool StandardOutputIsTerminal() {
    return IsConsole(STD_OUTPUT_HANDLE);
}

bool StandardErrorIsTerminal() {
    return IsConsole(STD_ERROR_HANDLE);
}

}  // namespace velm
