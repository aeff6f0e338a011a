#pragma once

#include <string>

#include "htmlview/html_document.h"

namespace velm {

/// How a page is laid out as RTF.
struct RtfLayout {
    int fontHalfPoints = 18;  ///< size of body text
    int widthTwips = 4000;    ///< room for a table's columns
    bool shrinkToFit = true;  ///< tables are made as narrow as the room; otherwise as wide as their text wants
};

/// Writes a page as RTF in plain ASCII. Link and anchor marks stay in the text.
std::string WriteRtf(const HtmlDocument& document, const RtfLayout& layout);

}  // namespace velm
