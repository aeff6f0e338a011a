#include "app/application.h"

#include <commctrl.h>

#include <utility>

#include "app/main_frame.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "ui/display_scale.h"
#include "ui/window_class.h"

namespace velm {
namespace {

bool RegisterChildClass() {
    const HICON icon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_CONVERSION_FILE));
    return RegisterWindowClass(WINDOW_CLASS, icon, nullptr, reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1));
}

bool InitControls() {
    const INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_DATE_CLASSES | ICC_BAR_CLASSES | ICC_LISTVIEW_CLASSES};
    return InitCommonControlsEx(&controls) && SHInitExtraControls();
}

}  // namespace

CVelmApplication::CVelmApplication(const CVelmServices& services, CVelmOptionsStore& options, CVelmString programFolder,
                                   CVelmString cacheFolder)
    : services_(services),
      options_(options),
      programFolder_(std::move(programFolder)),
      cacheFolder_(std::move(cacheFolder)),
      context_(services.clock) {}

CVelmApplication::~CVelmApplication() = default;

bool CVelmApplication::InitInstance(int showCommand) {
    if (!InitControls() || !RegisterChildClass()) {
        return false;
    }
    LoadSettings(settings_, options_, programFolder_);
    formatIcons_ = std::make_unique<CVelmBitmap>(IDB_FORMAT_ICONS, BaseColor(), true);
    frame_ = std::make_unique<CVelmFrame>(
        CVelmProgram{services_, context_, settings_, options_, programFolder_, cacheFolder_, *formatIcons_});
    if (!frame_->CreateFrame(showCommand)) {
        frame_.reset();
        return false;
    }
    UpdateWindow(frame_->Handle());
    return true;
}

int CVelmApplication::Run() {
    MSG message{};
    for (;;) {
        if (!PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
            frame_->UpdateCommands();
        }
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
            return static_cast<int>(message.wParam);
        }
        if (!frame_->PreTranslate(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

void CVelmApplication::ExitInstance() {
    SaveSettings(settings_, options_);
    frame_.reset();
    formatIcons_.reset();
}

}  // namespace velm
