#pragma once

#include "platform/fetch.h"

namespace velm {

/// What every system's fetcher holds to.
constexpr int MAX_REDIRECTIONS = 10;

/// What a server answers with the page that was asked for; anything else is told as a failure.
constexpr bool BringsThePage(long status) {
    return status >= 200 && status <= 203;
}

/// A NUL inside would have the system fetch from another address than the one that was looked at.
inline bool IsFetchable(CVelmStringView url) {
    return StartsWithNoCase(url, HTTP_SCHEME) && url.find(u'\0') == CVelmStringView::npos;
}

}  // namespace velm
