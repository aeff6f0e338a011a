#pragma once

#include "platform/fetch.h"

namespace velm {

/// What every system's fetcher holds to.
constexpr int MOST_REDIRECTIONS = 10;

/// A NUL inside would have the system fetch from another address than the one that was looked at.
inline bool IsFetchable(CVelmStringView url) {
    return StartsWithNoCase(url, HTTP_SCHEME) && url.find(u'\0') == CVelmStringView::npos;
}

}  // namespace velm
