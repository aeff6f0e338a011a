#include <cstdlib>

#include "cli/shell.h"
#include "platform/wide_text_win32.h"

namespace velm::test {

int RunShell(const std::string& commands, const std::string& redirection) {
    return _wsystem(ToWide(FromUtf8(commands + redirection)).c_str());
}

void SetVariable(const char* name, const std::string& value) {
    _wputenv_s(ToWide(FromUtf8(name)).c_str(), ToWide(FromUtf8(value)).c_str());
}

}  // namespace velm::test
