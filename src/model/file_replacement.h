#pragma once

#include <functional>
#include <string_view>

#include "model/file_stream.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

/// Gives a file new content in one step: `write` fills a temporary file beside it, which is flushed to the disk and
/// put in its place. False, with the old file whole and no temporary file left, when anything fails; a file that the
/// user may not write to counts as a failure.
bool ReplaceFile(const CVelmServices& services, const CVelmString& path,
                 const std::function<bool(CVelmFileStream&)>& write);

/// The same with these bytes, and with the bytes of another file.
bool ReplaceFile(const CVelmServices& services, const CVelmString& path, std::string_view bytes);
bool CopyFileTo(const CVelmServices& services, const CVelmString& source, const CVelmString& path);

/// Whether a file holds already, byte for byte, what `write` writes.
bool HoldsAlready(const CVelmServices& services, const CVelmString& path,
                  const std::function<bool(CVelmFileStream&)>& write);

/// Copies a file to its full name followed by ".bak", unless there is such a file or nothing to copy. False when the
/// copy cannot be made.
bool KeepOriginal(const CVelmServices& services, const CVelmString& path);

}  // namespace velm
