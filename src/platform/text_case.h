#pragma once

namespace velm {

/// What FoldCase does with a unit that is neither ASCII nor a surrogate, by the system's own tables.
char16_t FoldCaseBeyondAscii(char16_t unit);

}  // namespace velm
