#pragma once

#include <string>
#include <string_view>

#include "platform/text.h"

namespace velm {

/// NAME=VALUE, split at the first "=".
struct Assignment {
    std::string name;
    std::string value;

    /// The value comes line by line from standard input.
    bool IsStreamed() const { return value == "-"; }
};

/// Ends the command when there is no "=" or nothing before it.
Assignment SplitAssignment(std::string_view command, const std::string& word);

}  // namespace velm
