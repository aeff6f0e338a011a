#pragma once

#include <string>

#include "platform/text.h"

namespace velm {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

/// The text as a wide string of the system. Valid as long as the text is.
inline const wchar_t* Wide(const CVelmString& text) {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}
inline const wchar_t* Wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}

/// Copies between the program's text and the system's wide strings: the same UTF-16 units.
inline std::wstring ToWide(CVelmStringView text) {
    return {text.begin(), text.end()};
}
inline CVelmString FromWide(std::wstring_view text) {
    return {text.begin(), text.end()};
}

}  // namespace velm
