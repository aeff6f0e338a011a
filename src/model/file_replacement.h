#pragma once

#include <string_view>

#include "platform/file.h"
#include "platform/text.h"

namespace velm {

/// Gives a file new content in one step: a temporary file beside it is flushed to the disk and put in its place.
/// False, with the old file whole and no temporary file left, when anything fails; a file that the user may not write
/// to counts as a failure.
bool ReplaceFile(CVelmFileSystem& files, const CVelmString& path, std::string_view bytes);

/// The same with the bytes of another file.
bool CopyFileTo(CVelmFileSystem& files, const CVelmString& source, const CVelmString& path);

}  // namespace velm
