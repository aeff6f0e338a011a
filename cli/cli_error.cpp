#include "cli_error.h"

#include <algorithm>

namespace velm {

void Fail(const std::string& text) {
    throw CVelmCliError(STATUS_FAILED, text);
}

void FailUsage(const std::string& text) {
    throw CVelmCliError(STATUS_USAGE, text);
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    quoted += text;
    quoted += '"';
    return quoted;
}

std::string OneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return text;
}

}  // namespace velm
