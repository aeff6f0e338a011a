#pragma once

#include <stdexcept>
#include <string>

#include "platform/text.h"

namespace velm {

/// Exit statuses of the command.
constexpr int STATUS_OK = 0;
constexpr int STATUS_FAILED = 1;  ///< the request failed
constexpr int STATUS_USAGE = 2;   ///< invalid usage

/// Ends a subcommand: main prints the text (UTF-8) as one line, then the details, and exits with the status.
class CVelmCliError : public std::runtime_error {
public:
    CVelmCliError(int exitStatus, const std::string& text) : std::runtime_error(text), status(exitStatus) {}

    int status;
    std::string details;  ///< lines for below the text, each with its end
};

[[noreturn]] void Fail(const std::string& text);
[[noreturn]] void FailUsage(const std::string& text);

/// Ends the command unless the address begins with http://, or else with https://.
void CheckHttp(const CVelmString& url);
void CheckWebAddress(const CVelmString& url);

/// The text in quotation marks, for a message.
std::string Quoted(const std::string& text);

/// The text on one line: control characters become "?".
std::string OneLine(std::string text);

}  // namespace velm
