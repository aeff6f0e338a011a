#pragma once

#include <string>
#include <string_view>

#include "ask/unit_words.h"
#include "source_table.h"

namespace velm {

/// What a data file's text form says about the words for its units. `name` is the data file's, without extension; the
/// source's path and a wrong line end the command.
CVelmFileWords WordsFromSource(const SourceFile& file, std::string_view text, const CVelmString& name);

}  // namespace velm
