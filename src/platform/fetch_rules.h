#pragma once

#include "platform/fetch.h"

namespace velm {

constexpr int MAX_REDIRECTIONS = 10;

/// Status codes accepted as success.
constexpr bool IsSuccess(long status) {
    return status >= 200 && status <= 203;
}

/// An embedded NUL would make the system fetch a different address than the one checked here.
inline bool IsFetchable(CVelmStringView url) {
    return StartsWithNoCase(url, HTTP_SCHEME) && url.find(u'\0') == CVelmStringView::npos;
}

}  // namespace velm
