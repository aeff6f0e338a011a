#pragma once

#include <string>

namespace velm::test {

/// What commands of the system's shell write to standard output, and their status. What they write to standard error
/// goes to the file.
std::string RunShell(const std::string& commands, const std::string& errorFile, int& status);
void SetVariable(const char* name, const std::string& value);

}  // namespace velm::test
