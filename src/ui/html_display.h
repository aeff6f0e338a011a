#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

#include "platform/text.h"

namespace velm {

struct CVelmModuleDeleter {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};

/// The library of the HTML display control. It is loaded on first use and kept for the program's run.
class CVelmHtmlLibrary {
public:
    /// The library's file is looked for in this folder, which ends with a backslash.
    explicit CVelmHtmlLibrary(const CVelmString& folder) : folder_(folder) {}

    /// Loads and initialises the library, unless that is done. False when it is missing or refuses.
    bool Load();

private:
    CVelmString folder_;
    std::unique_ptr<std::remove_pointer_t<HMODULE>, CVelmModuleDeleter> module_;
};

/// A display control in a rectangle of its parent, tables shrunk to fit; null when the library or the window fails.
HWND CreateHtmlControl(CVelmHtmlLibrary& library, HWND parent, const RECT& place);

}  // namespace velm
