#include "dialogs/html_viewer.h"

#include "app/display_scale.h"
#include "app/wide_text.h"
#include "dialogs/dialog_frame.h"
#include "htmlview/display_messages.h"
#include "resource.h"

namespace velm {
namespace {

constexpr const char16_t* LIBRARY_FILE = u"htmlview.dll";

/// Pixels of an ordinary screen, until the first layout.
constexpr int FIRST_LEFT = 5;

class HtmlViewer : public CVelmDialog {
public:
    HtmlViewer(const CVelmString& caption, const CVelmString& page, CVelmHtmlLibrary& library)
        : CVelmDialog(IDD_HTML_VIEWER, IDM_DONE), caption_(caption), page_(page), library_(library) {}

protected:
    CVelmString Caption() const override { return caption_; }
    std::span<const CVelmPlacement> Placements() const override { return {}; }

    HWND OnInit() override {
        RECT place = Room();
        place.left = Scaled(FIRST_LEFT);
        control_ = CreateHtmlControl(library_, Handle(), place, true);
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

private:
    const CVelmString& caption_;
    const CVelmString& page_;
    CVelmHtmlLibrary& library_;
    HWND control_ = nullptr;
};

}  // namespace

bool CVelmHtmlLibrary::Load() {
    if (module_) {
        return true;
    }
    module_.reset(LoadLibraryW(Wide(folder_ + LIBRARY_FILE)));
    if (!module_) {
        return false;
    }
    const auto init = reinterpret_cast<InitHtmlControl>(
        reinterpret_cast<void*>(GetProcAddress(module_.get(), MAKEINTRESOURCEA(INIT_HTML_CONTROL_ORDINAL))));
    if (init == nullptr || !init(GetModuleHandleW(nullptr))) {
        module_.reset();
    }
    return module_ != nullptr;
}

HWND CreateHtmlControl(CVelmHtmlLibrary& library, HWND parent, const RECT& place, bool visible) {
    if (!library.Load()) {
        return nullptr;
    }
    const DWORD style = WS_CHILD | WS_TABSTOP | (visible ? WS_VISIBLE : 0U);
    const HWND window = CreateWindowExW(0, DISPLAY_CLASS, L"HTML", style, static_cast<int>(place.left),
                                        static_cast<int>(place.top), Width(place), Height(place), parent,
                                        reinterpret_cast<HMENU>(IDC_HTML), GetModuleHandleW(nullptr), nullptr);
    if (window != nullptr) {
        SendMessageW(window, DTM_ENABLESHRINK, TRUE, 0);
        PostMessageW(window, DTM_ENABLESHRINK, TRUE, 0);
    }
    return window;
}

void ShowHtmlViewer(HWND parent, const CVelmString& caption, const CVelmString& pageText, CVelmHtmlLibrary& library) {
    HtmlViewer(caption, pageText, library).Show(parent);
}

}  // namespace velm
