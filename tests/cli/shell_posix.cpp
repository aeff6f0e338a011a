#include <sys/wait.h>

#include <cstdlib>

#include "cli/shell.h"

namespace velm::test {

int RunShell(const std::string& commands, const std::string& redirection) {
    const int ended = std::system(("(" + commands + "\n)" + redirection).c_str());
    return WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
}

void SetVariable(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1);
}

}  // namespace velm::test
