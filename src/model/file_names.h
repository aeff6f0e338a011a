#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/text.h"

namespace velm {

class CVelmCatalog;

/// The longest name that a new file gets, without its extension.
constexpr std::size_t FILE_NAME_MAX_LENGTH = 63;

/// Whether every system takes the name (before its extension). Refused are an empty name, separators, colons,
/// wildcards, quotes, angle brackets, bars and control characters, the names of devices, and a dot or blank at the end.
bool IsFileNameAllowed(CVelmStringView name);

/// Whether the catalog, or its folder, has a file of that name and kind already, in any letter case.
bool IsFileNameTaken(const CVelmCatalog& catalog, std::int32_t kind, const CVelmString& name);

/// The name for a new file: "_new" behind it until no other file has it, then cut to its greatest length. Deliberate:
/// the cut comes last, so that a very long name may be another file's again; EditFile refuses it then. A name that no
/// file may have stays as it is.
CVelmString MakeNewFileName(const CVelmCatalog& catalog, std::int32_t kind, CVelmString name);

}  // namespace velm
