#pragma once

#include <string>
#include <vector>

#include "model/document.h"

namespace velm {

/// Every text that the items are called by.
std::vector<CVelmString> ItemNames(const CVelmDocument& document);

/// The item that a text (UTF-8) names by its identifier or its name, exactly or else ignoring letter case. Ends the
/// command with the nearest ones when there is none, and with the list when there are several. `what` is the word
/// for an item in the message.
CVelmItem& FindItem(const CVelmDocument& document, const std::string& text, const std::string& what);

}  // namespace velm
