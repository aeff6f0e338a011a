#include <windows.h>

#include <shlobj.h>

#include <array>

#include "platform/cache_folder.h"
#include "platform/options_store.h"
#include "platform/program_folder.h"
#include "platform/services.h"
#include "platform/wide_text_win32.h"
#include "settings/settings.h"
#include "tallyra/calculator_window.h"
#include "ui/single_instance.h"

namespace {

/// The tape's file in the user's own folder, which is made when it is missing; empty when there is no such folder.
velm::CVelmString TapePath() {
    std::array<wchar_t, MAX_PATH> folder{};
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA | CSIDL_FLAG_CREATE, nullptr, 0, folder.data()))) {
        return {};
    }
    const velm::CVelmString own = velm::FromWide(folder.data()) + u"\\Velmora";
    CreateDirectoryW(velm::Wide(own), nullptr);
    return own + u"\\tallyra tape.txt";
}

/// The folder that the converter beside the calculator uses.
velm::CVelmString DataFolder() {
    velm::CVelmSettings settings;
    const auto options = velm::OpenOptionsStore(velm::DefaultOptionsLocation());
    velm::ReadStoredSettings(settings, *options);
    return velm::DataFolder(settings, velm::ProgramFolder());
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int showCommand) {
    SetProcessDPIAware();
    if (!velm::IsOnlyInstance(L"Local\\Corvane.Tallyra", velm::CALCULATOR_CLASS)) {
        return 0;
    }
    velm::CVelmCalculatorWindow window(velm::SystemServices(), TapePath(), DataFolder(), velm::UserCacheFolder());
    if (!window.CreateFrame(showCommand)) {
        return 1;
    }
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!window.PreTranslate(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return static_cast<int>(message.wParam);
}
