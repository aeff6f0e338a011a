#pragma once

#include <cstddef>
#include <string>

#include "platform/text.h"

namespace velm {

/// What stands under a text to mark its wrong part: blanks and "^", at least one. The place is in UTF-16 units.
std::string FaultMark(CVelmStringView text, std::size_t position, std::size_t length);

/// Ends the command as Fail does, with the text below the message and its wrong part marked.
[[noreturn]] void FailAt(const std::string& message, CVelmStringView text, std::size_t position, std::size_t length);

}  // namespace velm
