#pragma once

#include <windows.h>

#include <optional>

#include "platform/text.h"

namespace velm {

/// Puts a text on the clipboard as Unicode text. False leaves it unsaid what the clipboard holds.
bool SetClipboardText(HWND owner, CVelmStringView text);

/// The clipboard's Unicode text, up to its NUL; nothing when it holds none or another program keeps it.
std::optional<CVelmString> GetClipboardText(HWND owner);

}  // namespace velm
