#pragma once

#include "formula/formula_context.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

class CVelmBitmap;
class CVelmOptionsStore;
struct CVelmSettings;

/// Shared by all windows for the whole run. Nothing here is owned.
struct CVelmProgram {
    CVelmServices services;
    FormulaContext& context;
    CVelmSettings& settings;
    CVelmOptionsStore& options;
    CVelmString programFolder;  ///< ends with a backslash
    CVelmString cacheFolder;    ///< for what the program can make again; empty: none
    CVelmBitmap& formatIcons;   ///< the item list's images, tinted with the base color
};

}  // namespace velm
