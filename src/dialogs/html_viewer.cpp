#include <windows.h>
// after windows.h, which it needs
#include <shellapi.h>

#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "platform/fetch.h"
#include "platform/wide_text_win32.h"
#include "resource.h"
#include "ui/display_messages.h"
#include "ui/display_scale.h"
#include "ui/html_display.h"

namespace velm {
namespace {

/// Pixels at scale 1, until the first layout.
constexpr int FIRST_LEFT = 5;

/// Highest error code of ShellExecuteW.
constexpr INT_PTR LAST_SHELL_ERROR = 32;

class HtmlViewer : public CVelmDialog {
public:
    HtmlViewer(const CVelmString& caption, const CVelmString& page, CVelmHtmlLibrary& library)
        : CVelmDialog(IDD_HTML_VIEWER, IDM_DONE, caption, {}), page_(page), library_(library) {}

protected:
    HWND OnInit() override {
        RECT place = Room();
        place.left = Scaled(FIRST_LEFT);
        control_ = CreateHtmlControl(library_, Handle(), place);
        if (control_ != nullptr) {
            SetWindowTextW(control_, L"");
            SendMessageW(control_, DTM_CLEAR, 0, 0);
            SendMessageW(control_, DTM_ADDTEXTW, FALSE, reinterpret_cast<LPARAM>(Wide(page_)));
            PostMessageW(control_, DTM_ENDOFSOURCE, 0, 0);
        }
        return control_;
    }

    void OnLayout() override {
        const RECT room = Room();
        MoveWindow(control_, 0, static_cast<int>(room.top), Width(room), Height(room), TRUE);
    }

    LRESULT OnNotify(const NMHDR& notification) override {
        if (notification.code == NM_HOTSPOT) {
            target_ = FromWide(reinterpret_cast<const HtmlHotspot&>(notification).target);
            PostMessageW(Handle(), WM_COMMAND, IDC_HTML, 0);  // the control is still busy with the tap
        }
        return 0;
    }

    void OnCommand(WORD id, WORD /*notification*/) override {
        if (id == IDC_HTML) {
            FollowOut();
        }
    }

private:
    /// Opens web links in the system's browser, after asking. Starts nothing else that a page names.
    void FollowOut() const {
        if (!IsWebAddress(target_)) {
            Tell(u"The link leads to \"" + target_ + u"\", which is not in this page.");
            return;
        }
        const CVelmString question = u"Do you want to open " + target_ + u" in the web browser?";
        if (MessageBoxW(Handle(), Wide(question), Wide(Caption()), MB_YESNO | MB_ICONQUESTION) != IDYES) {
            return;
        }
        const HINSTANCE shown = ShellExecuteW(Handle(), L"open", Wide(target_), nullptr, nullptr, SW_SHOWNORMAL);
        if (reinterpret_cast<INT_PTR>(shown) <= LAST_SHELL_ERROR) {
            Tell(u"The web browser could not be started.", MB_ICONSTOP);
        }
    }

    const CVelmString& page_;
    CVelmHtmlLibrary& library_;
    HWND control_ = nullptr;
    CVelmString target_;  ///< of the link tapped last
};

}  // namespace

void ShowHtmlViewer(HWND parent, const CVelmString& caption, const CVelmString& pageText, CVelmHtmlLibrary& library) {
    HtmlViewer(caption, pageText, library).Show(parent);
}

}  // namespace velm
