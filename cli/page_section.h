#pragma once

#include <string>
#include <vector>

#include "command.h"

namespace velm {

/// What the text references of a folder say about one of its data files (UTF-8): the lines from the heading that is
/// marked with the file's name to the next heading, with an empty line between paragraphs. Empty when none has it.
std::vector<std::string> ReadSection(const CVelmServices& services, const CVelmString& folder,
                                     const CVelmString& fileName);

}  // namespace velm
