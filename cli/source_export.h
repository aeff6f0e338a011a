#pragma once

#include <string>

#include "model/document.h"

namespace velm {

/// The text form of a document, UTF-8. What is made of it by import is the same file byte for byte.
std::string SourceFromDocument(const CVelmDocument& document);

}  // namespace velm
