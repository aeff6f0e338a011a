#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"

namespace velm {

/// Arguments, environment and standard streams of a console program. All text is UTF-8 and passes unchanged.

/// The arguments without the program's name. Falls back to those of main where the system has nothing better.
std::vector<std::string> CommandLineArguments(int count, const char* const* arguments);

/// Nothing when the variable is unset or empty.
std::optional<CVelmString> EnvironmentVariable(const CVelmString& name);

/// Blocks until input is available and reads at most `count` bytes. 0 at the end, -1 on failure.
std::int64_t ReadStandardInput(void* buffer, std::size_t count);

/// Writes everything; false when it could not.
bool WriteStandardOutput(std::string_view bytes);
bool WriteStandardError(std::string_view bytes);

/// Whether the stream is a terminal.
bool StandardInputIsTerminal();
bool StandardOutputIsTerminal();
bool StandardErrorIsTerminal();

}  // namespace velm
