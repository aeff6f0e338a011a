#include <clocale>
#include <cwctype>

#include "platform/text_case.h"

namespace velm {

namespace {

/// A Unicode locale regardless of the user's own, so that file names compare the same for everyone.
locale_t UnicodeLocale() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

}  // namespace

char16_t FoldCaseBeyondAscii(char16_t unit) {
    if (UnicodeLocale() == nullptr) {
        return unit;
    }
    const std::wint_t lower = towlower_l(unit, UnicodeLocale());
    return lower <= 0xFFFF ? static_cast<char16_t>(lower) : unit;
}

}  // namespace velm
