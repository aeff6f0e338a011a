#pragma once

#include <memory>

#include "platform/options_store.h"
#include "settings/settings.h"

namespace velm {

/// The options of the current user, the very ones that the program with the window keeps.
std::unique_ptr<CVelmOptionsStore> UserOptions();

/// What it holds, the defaults in place of what was never set.
CVelmSettings LoadUserSettings();

/// The data folder that the options name, or the default one.
CVelmString DataFolderOfOptions();

/// The address of the update list that the options name, or the default one.
CVelmString UpdateUrlOfOptions();

}  // namespace velm
