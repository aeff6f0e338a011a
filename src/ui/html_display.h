#pragma once

#include <windows.h>

#include "platform/text.h"
#include "ui/gdi.h"

namespace velm {

/// The library of the HTML display control, loaded on first use and kept.
class CVelmHtmlLibrary {
public:
    /// The library is loaded from this folder, which ends with a backslash.
    explicit CVelmHtmlLibrary(const CVelmString& folder) : folder_(folder) {}

    /// Loads and initializes the library unless done already. False when it is missing or fails.
    bool Load();

private:
    CVelmString folder_;
    CVelmModule module_;
};

/// A display control in a rectangle of its parent, tables shrunk to fit; null when the library or the window fails.
HWND CreateHtmlControl(CVelmHtmlLibrary& library, HWND parent, const RECT& place);

}  // namespace velm
