#pragma once

#include <optional>

#include "platform/file.h"
#include "platform/text.h"

namespace velm {

/// The file of a folder with that name in any letter case, as the folder spells it; the exact spelling is preferred.
/// Nothing when there is none. The folder ends with a separator or is empty.
std::optional<CVelmString> FindInFolder(CVelmFileSystem& files, const CVelmString& folder, const CVelmString& name);

}  // namespace velm
