#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "platform/terminal.h"
#include "platform/write_all_posix.h"

namespace velm {

std::vector<std::string> CommandLineArguments(int count, const char* const* arguments) {
    return count > 1 ? std::vector<std::string>(arguments + 1, arguments + count) : std::vector<std::string>();
}

std::optional<CVelmString> EnvironmentVariable(const CVelmString& name) {
    const char* value = std::getenv(ToUtf8(name).c_str());
    return value != nullptr && *value != '\0' ? std::optional(FromUtf8(value)) : std::nullopt;
}

std::int64_t ReadStandardInput(void* buffer, std::size_t count) {
    for (;;) {
        const ssize_t got = read(STDIN_FILENO, buffer, count);
        if (got >= 0 || errno != EINTR) {
            return got;
        }
    }
}

bool WriteStandardOutput(std::string_view bytes) {
    return WriteAll(STDOUT_FILENO, bytes);
}

bool WriteStandardError(std::string_view bytes) {
    return WriteAll(STDERR_FILENO, bytes);
}

bool StandardInputIsTerminal() {
    return isatty(STDIN_FILENO) == 1;
}

bool StandardOutputIsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

bool StandardErrorIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

}  // namespace velm
