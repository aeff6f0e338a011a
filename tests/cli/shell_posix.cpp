#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>

#include "cli/shell.h"

namespace velm::test {

std::string RunShell(const std::string& commands, const std::string& errorFile, int& status) {
    std::FILE* output = popen(("(" + commands + "\n) 2>'" + errorFile + "'").c_str(), "r");
    std::string text;
    for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) {
        text += static_cast<char>(c);
    }
    const int ended = pclose(output);
    status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
    return text;
}

void SetVariable(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1);
}

}  // namespace velm::test
