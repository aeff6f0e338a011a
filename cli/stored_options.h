#pragma once

#include <memory>

#include "platform/options_store.h"
#include "settings/settings.h"

namespace velm {

/// The options of the current user, shared with the window program.
std::unique_ptr<CVelmOptionsStore> UserOptions();

/// The options, with defaults for those never set.
CVelmSettings LoadUserSettings();

/// The data folder of the options, or the default one.
CVelmString DataFolderOfOptions();

/// The update list's address of the options, or the default one.
CVelmString UpdateUrlOfOptions();

}  // namespace velm
