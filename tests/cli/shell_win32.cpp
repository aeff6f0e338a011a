#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "cli/shell.h"
#include "platform/wide_text_win32.h"

namespace velm::test {

std::string RunShell(const std::string& commands, const std::string& errorFile, int& status) {
    std::FILE* output = _wpopen(ToWide(FromUtf8(commands + " 2>\"" + errorFile + "\"")).c_str(), L"rb");
    std::string text;
    for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) {
        text += static_cast<char>(c);
    }
    status = _pclose(output);
    return text;
}

void SetVariable(const char* name, const std::string& value) {
    _wputenv_s(ToWide(FromUtf8(name)).c_str(), ToWide(FromUtf8(value)).c_str());
}

}  // namespace velm::test
