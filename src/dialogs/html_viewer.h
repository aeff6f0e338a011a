#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

class CVelmHtmlLibrary;

/// Shows a page of HTML under a caption until the user closes it. Without the library the page stays empty.
void ShowHtmlViewer(HWND parent, const CVelmString& caption, const CVelmString& pageText, CVelmHtmlLibrary& library);

}  // namespace velm
