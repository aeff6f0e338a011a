#include <windows.h>

#include <stdexcept>

#include "cli/process.h"
#include "platform/file.h"
#include "platform/wide_text_win32.h"

namespace velm::test {

namespace {

/// An argument as the C library takes it apart again.
std::wstring Quote(const std::string& word) {
    std::wstring quoted = L"\"";
    std::size_t slashes = 0;
    for (const wchar_t c : ToWide(FromUtf8(word))) {
        if (c == L'"') {
            quoted.append(slashes + 1, L'\\');
        }
        slashes = c == L'\\' ? slashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(slashes, L'\\') + L"\" ";
}

HANDLE OpenInherited(const CVelmString& path) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(ToWide(path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       &inherited, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

ProcessResult RunVelmora(const Words& arguments, std::string_view input) {
    const TemporaryFolder folder;
    folder.WriteText(u"in", input);
    std::wstring line = Quote(VELMORA_PROGRAM);
    for (const std::string& word : arguments) {
        line += Quote(word);
    }
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = OpenInherited(folder.PathOf(u"in"));
    start.hStdOutput = OpenInherited(folder.PathOf(u"out"));
    start.hStdError = OpenInherited(folder.PathOf(u"err"));
    PROCESS_INFORMATION process{};
    const BOOL started =
        CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process);
    for (HANDLE handle : {start.hStdInput, start.hStdOutput, start.hStdError}) {
        CloseHandle(handle);
    }
    if (started == 0) {
        throw std::runtime_error("cannot start " VELMORA_PROGRAM);
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    const auto read = [&folder](CVelmStringView name) {
        const Bytes bytes = folder.Read(name);
        return std::string(bytes.begin(), bytes.end());
    };
    return {static_cast<int>(status), read(u"out"), read(u"err")};
}

}  // namespace velm::test
