#include <windows.h>

#include "platform/text_case.h"

namespace velm {

char16_t FoldCaseBeyondAscii(char16_t unit) {
    const auto source = static_cast<wchar_t>(unit);
    wchar_t lower = source;
    if (LCMapStringW(LOCALE_INVARIANT, LCMAP_LOWERCASE, &source, 1, &lower, 1) != 1) {
        return unit;
    }
    return static_cast<char16_t>(lower);
}

}  // namespace velm
