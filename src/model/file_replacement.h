#pragma once

#include <string_view>

#include "platform/file.h"
#include "platform/text.h"

namespace velm {

/// Replaces a file's content atomically through a flushed temporary file. On any failure, write protection included,
/// returns false, keeps the old file intact and removes the temporary file.
bool ReplaceFile(CVelmFileSystem& files, const CVelmString& path, std::string_view bytes);

/// The same with the bytes of another file.
bool CopyFileTo(CVelmFileSystem& files, const CVelmString& source, const CVelmString& path);

}  // namespace velm
