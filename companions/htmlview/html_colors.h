#pragma once

#include <cstdint>

#include "htmlview/html_tokenizer.h"

namespace velm {

/// The color that a tag sets, <font color=...> or style="color: ...", as 0xRRGGBB; -1 when it sets none.
std::int32_t ColorOf(const HtmlToken& token);

}  // namespace velm
