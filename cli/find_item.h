#pragma once

#include <string>

#include "model/document.h"

namespace velm {

/// The item that a text (UTF-8) names, as CVelmIdentifierIndex matches it. Ends the command with the nearest ones when
/// there is none, and with the list when there are several. `what` is the word for an item in the message.
CVelmItem& FindItem(const CVelmDocument& document, const std::string& text, const std::string& what);

/// `did you mean ...?` with the identifiers and names that are nearest to a text.
std::string DidYouMeanItem(const CVelmDocument& document, CVelmStringView text, std::size_t limit);

}  // namespace velm
