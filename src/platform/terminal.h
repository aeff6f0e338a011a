#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"

namespace velm {

/// What a program without a window asks of the system that started it. All bytes are UTF-8 and pass unchanged.

/// The arguments behind the program's own name. What main was given is used where the system has nothing better.
std::vector<std::string> CommandLineArguments(int count, const char* const* arguments);

/// Nothing when the variable is not set or empty.
std::optional<CVelmString> EnvironmentVariable(const CVelmString& name);

/// Waits until there is something to read and takes what there is, at most `count` bytes. 0 at the end, -1 on failure.
std::int64_t ReadStandardInput(void* buffer, std::size_t count);

/// Writes everything; false when it could not.
bool WriteStandardOutput(std::string_view bytes);
bool WriteStandardError(std::string_view bytes);

/// Whether standard error is looked at by a person: a terminal, neither a pipe nor a file.
bool StandardErrorIsTerminal();

}  // namespace velm
