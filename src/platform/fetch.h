#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/text.h"

namespace velm {

/// The schemes that are fetched, in any letter case.
constexpr CVelmStringView HTTP_SCHEME = u"http://";
constexpr CVelmStringView HTTPS_SCHEME = u"https://";

inline bool IsWebAddress(CVelmStringView url) {
    return StartsWithNoCase(url, HTTP_SCHEME) || StartsWithNoCase(url, HTTPS_SCHEME);
}

/// When a fetch gives up.
struct CVelmFetchLimits {
    std::uint64_t maxBytes = 16 << 20;          ///< a larger file fails
    std::chrono::milliseconds connect{15'000};  ///< until the server is reached
    std::chrono::milliseconds stall{30'000};    ///< each span of this length brings at least stallBytes
    std::uint64_t stallBytes = 256;
};

enum class FetchStatus { Ok, Failed, Stopped };

/// Called with the number of bytes received so far, on arrival and several times a second while waiting. False stops
/// the fetch.
using CVelmFetchProgress = std::function<bool(std::uint64_t bytes)>;

struct CVelmFetched {
    FetchStatus status = FetchStatus::Failed;
    CVelmString cacheFile;  ///< path of the local copy when the status is Ok; the caller removes it
};

/// Fetches files over HTTP and HTTPS. Tests substitute their own.
class CVelmFetcher {
public:
    virtual ~CVelmFetcher() = default;

    /// Bypasses every cache. Anything but a whole file from an "http://" or "https://" address, redirections included,
    /// is Failed and leaves nothing on the disk. An "https://" address is redirected to such addresses only.
    virtual CVelmFetched Fetch(const CVelmString& url, const CVelmFetchProgress& progress) = 0;
};

/// The system's own fetcher.
std::unique_ptr<CVelmFetcher> CreateHttpFetcher(const CVelmFetchLimits& limits = {});

}  // namespace velm
