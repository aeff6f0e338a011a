#include "fault_mark.h"

#include <algorithm>

#include "cli_error.h"
#include "table.h"

namespace velm {

std::string FaultMark(CVelmStringView text, std::size_t position, std::size_t length) {
    const auto columns = [](CVelmStringView part) { return DisplayWidth(OneLine(ToUtf8(part))); };
    position = std::min(position, text.size());
    return std::string(columns(text.substr(0, position)), ' ') +
           std::string(std::max<std::size_t>(columns(text.substr(position, length)), 1), '^');
}

void FailAt(const std::string& message, CVelmStringView text, std::size_t position, std::size_t length) {
    CVelmCliError error(STATUS_FAILED, message);
    error.details = "  " + OneLine(ToUtf8(text)) + "\n  " + FaultMark(text, position, length) + "\n";
    throw error;
}

}  // namespace velm
