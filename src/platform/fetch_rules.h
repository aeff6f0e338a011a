#pragma once

#include "platform/fetch.h"

namespace velm {

constexpr int MAX_REDIRECTIONS = 10;

/// Status codes accepted as success.
constexpr bool IsSuccess(long status) {
    return status >= 200 && status <= 203;
}

inline bool IsSecure(CVelmStringView url) {
    return StartsWithNoCase(url, HTTPS_SCHEME);
}

/// An embedded NUL would make the system fetch a different address than the one checked here.
inline bool IsFetchable(CVelmStringView url) {
    return IsWebAddress(url) && url.find(u'\0') == CVelmStringView::npos;
}

}  // namespace velm
