#include <array>

#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "settings/settings.h"

namespace velm {
namespace {

constexpr CVelmPlacement FullWidth(WORD control, int top, int bottom) {
    return {control, FromStart(DIALOG_MARGIN), FromStart(top), FromEnd(DIALOG_MARGIN), FromStart(bottom)};
}

constexpr int MIN_HEIGHT = 124;
constexpr std::array PLACEMENTS = {
    FullWidth(IDC_LABEL_1, 5, 19),     FullWidth(IDC_DATA_FOLDER, 20, 41),         FullWidth(IDC_LABEL_2, 47, 61),
    FullWidth(IDC_UPDATE_URL, 62, 83), FullWidth(IDC_LABEL_3, 89, MIN_HEIGHT - 3),
};

class SettingsDialog : public CVelmDialog {
public:
    explicit SettingsDialog(CVelmSettings& settings)
        : CVelmDialog(IDD_SETTINGS, IDM_OK_CANCEL, u"Velmora Settings", PLACEMENTS, MIN_HEIGHT), settings_(settings) {}

protected:
    HWND OnInit() override {
        SetText(IDC_DATA_FOLDER, settings_.dataFolder);
        SetText(IDC_UPDATE_URL, settings_.updateUrl);
        SHSipPreference(Handle(), SIP_UP);
        return nullptr;
    }

    void OnOk() override {
        SetField(settings_.dataFolder, Text(IDC_DATA_FOLDER));
        SetField(settings_.updateUrl, Text(IDC_UPDATE_URL));
        End(IDOK);
    }

private:
    CVelmSettings& settings_;
};

}  // namespace

int ShowSettingsDialog(HWND parent, CVelmSettings& settings) {
    return SettingsDialog(settings).Show(parent);
}

}  // namespace velm
