#pragma once

#include "platform/text.h"

namespace velm {

/// A help page and a place in it.
struct HelpTarget {
    CVelmString page;    ///< file name without ".htm"; empty when the target names no page of the program's folder
    CVelmString anchor;  ///< empty for the page's beginning
};

/// Reads "file:velmora.htm#main_contents", with or without "file:", quotes and "#". A page is named without a folder.
HelpTarget ParseHelpTarget(CVelmStringView text);

}  // namespace velm
