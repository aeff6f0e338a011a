#pragma once

#include <windows.h>

#include "model/reference_list.h"
#include "peghelp/help_target.h"
#include "ui/html_display.h"
#include "ui/window_class.h"

namespace velm {

inline constexpr const wchar_t* HELP_CLASS = L"PegHelpFrame";

/// The help viewer's one window: a page of the program's folder in the display control.
class CVelmHelpWindow : public CVelmWindow {
public:
    /// The services outlive the window; pages and the display control's library are in `folder`.
    CVelmHelpWindow(const CVelmServices& services, const CVelmString& folder);

    /// Shows a page. False, after a message box, when the library or the page is missing.
    bool Open(const HelpTarget& target, int showCommand);

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool CreateFrame();
    bool ShowPage(const HelpTarget& target);

    CVelmReferenceList pages_;
    CVelmHtmlLibrary library_;
    HWND display_ = nullptr;
    CVelmString shownPage_;
};

}  // namespace velm
