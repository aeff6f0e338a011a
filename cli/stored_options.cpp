#include "stored_options.h"

#include "platform/program_folder.h"

namespace velm {

std::unique_ptr<CVelmOptionsStore> UserOptions() {
    return OpenOptionsStore(DefaultOptionsLocation());
}

CVelmSettings LoadUserSettings() {
    CVelmSettings settings;
    LoadSettings(settings, *UserOptions(), ProgramFolder());
    return settings;
}

CVelmString DataFolderOfOptions() {
    return DataFolder(LoadUserSettings(), ProgramFolder());
}

CVelmString UpdateUrlOfOptions() {
    return UpdateUrl(LoadUserSettings());
}

}  // namespace velm
