#pragma once

#include <windows.h>

#include <optional>

#include "platform/text.h"

namespace velm {

/// Puts a text on the clipboard as Unicode text. On failure the clipboard's contents are unspecified.
bool SetClipboardText(HWND owner, CVelmStringView text);

/// The clipboard's Unicode text, up to its NUL; nothing when there is none or another program holds the clipboard.
std::optional<CVelmString> GetClipboardText(HWND owner);

}  // namespace velm
