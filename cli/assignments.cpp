#include "assignments.h"

#include <fmt/format.h>

#include "cli_error.h"

namespace velm {

Assignment SplitAssignment(std::string_view command, const std::string& word) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0) {
        FailUsage(fmt::format("{}: {} is not of the form NAME=VALUE", command, Quoted(word)));
    }
    return {word.substr(0, equals), word.substr(equals + 1)};
}

}  // namespace velm
