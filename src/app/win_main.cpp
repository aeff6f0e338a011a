#include <windows.h>

#include "app/application.h"
#include "app/main_frame.h"
#include "platform/cache_folder.h"
#include "platform/options_store.h"
#include "platform/program_folder.h"
#include "ui/single_instance.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int showCommand) {
    SetProcessDPIAware();
    if (!velm::IsOnlyInstance(L"Local\\Corvane.Velmora", velm::FRAME_CLASS)) {
        return 0;
    }
    const auto options = velm::OpenOptionsStore(velm::DefaultOptionsLocation());
    velm::CVelmApplication application(velm::SystemServices(), *options, velm::ProgramFolder(),
                                       velm::UserCacheFolder());
    if (!application.InitInstance(showCommand)) {
        return 1;
    }
    const int status = application.Run();
    application.ExitInstance();
    return status;
}
