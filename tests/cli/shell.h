#pragma once

#include <string>

namespace velm::test {

/// Runs commands in the system's shell with a redirection of what all of them write. Returns their exit status.
int RunShell(const std::string& commands, const std::string& redirection);

void SetVariable(const char* name, const std::string& value);

}  // namespace velm::test
