#pragma once

namespace velm {

/// FoldCase for a unit that is neither ASCII nor a surrogate, by the system's tables.
char16_t FoldCaseBeyondAscii(char16_t unit);

}  // namespace velm
