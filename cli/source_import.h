#pragma once

#include <memory>
#include <string_view>

#include "model/document.h"
#include "model/rate_days.h"
#include "source_table.h"

namespace velm {

/// Parses the text form of a data file (UTF-8). Ends the command with the file, the line and the reason if it is not
/// TOML.
toml::table ParseSource(const SourceFile& file, std::string_view text);

/// Makes a document of the text form of a data file. Ends the command in the same way if something in it is wrong or
/// says that the file is of another kind. `days` gets the dates of its rates.
std::unique_ptr<CVelmDocument> DocumentFromSource(const SourceFile& file, const toml::table& source, std::int32_t kind,
                                                  const CVelmServices& services, CVelmRateDays& days);

}  // namespace velm
