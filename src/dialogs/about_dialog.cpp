#include <array>

#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "platform/wide_text_win32.h"
#include "resource.h"
#include "ui/display_scale.h"
#include "version.h"

namespace velm {
namespace {

// Pixels at scale 1.
constexpr int PICTURE_SIZE = 32;
constexpr int TEXT_LEFT = PICTURE_SIZE + 14;
constexpr int LINE_HEIGHT = 17;
constexpr int TITLE_FONT = 16;
constexpr int LICENSE_TOP = 114;
constexpr int MIN_HEIGHT = LICENSE_TOP + 4 * LINE_HEIGHT;

constexpr CVelmPlacement Line(WORD control, int left, int top, int height = LINE_HEIGHT) {
    return {control, FromStart(left), FromStart(top), FromEnd(DIALOG_MARGIN), FromStart(top + height)};
}

constexpr std::array PLACEMENTS = {
    CVelmPlacement{IDC_ABOUT_PICTURE, FromStart(6), FromStart(4), FromStart(6 + PICTURE_SIZE),
                   FromStart(4 + PICTURE_SIZE)},
    Line(IDC_ABOUT_TITLE, TEXT_LEFT, 3),
    Line(IDC_ABOUT_VERSION, TEXT_LEFT, 21),
    Line(IDC_LABEL_1, DIALOG_MARGIN, 42),
    Line(IDC_LABEL_2, DIALOG_MARGIN, 59),
    Line(IDC_ABOUT_UPDATES, DIALOG_MARGIN, 76, 2 * LINE_HEIGHT),
    Line(IDC_ABOUT_LICENSE, DIALOG_MARGIN, LICENSE_TOP, 4 * LINE_HEIGHT),
};

class AboutDialog : public CVelmDialog {
public:
    explicit AboutDialog(const CVelmString& updateAddress)
        : CVelmDialog(IDD_ABOUT, IDM_DONE, u"Corvane Velmora", PLACEMENTS, MIN_HEIGHT),
          updateAddress_(updateAddress),
          picture_(LoadProgramIcon(IDI_CONVERSION_FILE, PICTURE_SIZE)),
          titleFont_(CreateProgramFont(TITLE_FONT, true)) {}

protected:
    HWND OnInit() override {
        Send(IDC_ABOUT_PICTURE, STM_SETICON, reinterpret_cast<WPARAM>(picture_.get()));
        Send(IDC_ABOUT_TITLE, WM_SETFONT, reinterpret_cast<WPARAM>(titleFont_.get()));
        SetWindowTextW(Control(IDC_ABOUT_VERSION), L"Version " VELMORA_VERSION);
        SetWindowTextW(Control(IDC_ABOUT_UPDATES), Wide(updateAddress_));
        SetWindowTextW(Control(IDC_ABOUT_LICENSE),
                       L"Copyright (c) 2026 The Velmora authors.\n"
                       L"Free software under the MIT License: use, change and pass it on. It comes without any "
                       L"warranty.");
        return nullptr;
    }

private:
    const CVelmString& updateAddress_;
    CVelmIcon picture_;
    CVelmFont titleFont_;
};

}  // namespace

void ShowAboutDialog(HWND parent, const CVelmString& updateAddress) {
    AboutDialog(updateAddress).Show(parent);
}

}  // namespace velm
