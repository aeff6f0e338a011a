#pragma once

#include <string>

#include "model/document.h"
#include "model/rate_days.h"

namespace velm {

/// The text form of a document and of the days of its rates, UTF-8. What is made of it by import is the same file byte
/// for byte.
std::string SourceFromDocument(const CVelmDocument& document, const CVelmRateDays& days);

}  // namespace velm
