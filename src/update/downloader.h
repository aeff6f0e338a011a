#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "model/catalog.h"
#include "platform/fetch.h"
#include "platform/text.h"

namespace velm {

/// Maximum number of files that one run fetches, lists included.
constexpr std::size_t MAX_DOWNLOADS = 1000;

/// How far a run has come.
struct CVelmDownloadProgress {
    std::size_t file = 0;       ///< which file is being fetched, from 1, the update list included
    std::size_t fileCount = 0;  ///< files known of so far
    std::uint64_t bytes = 0;    ///< of this file
};

/// Called when a file begins, when bytes arrive, and several times a second while waiting. False stops the run.
using CVelmDownloadObserver = std::function<bool(const CVelmDownloadProgress&)>;

/// Why a fetch that was not Ok failed: "stopped" or the address.
CVelmString DownloadErrorText(FetchStatus status, const CVelmString& url);

/// One download run: fetches an update list and what it names, and keeps the update files in the catalog's folder.
class CVelmDownloader {
public:
    /// The catalog and the fetcher are not owned and outlive the downloader.
    CVelmDownloader(const CVelmCatalog& catalog, CVelmFetcher& fetcher, const CVelmString& listUrl)
        : urls_{listUrl}, catalog_(catalog), fetcher_(fetcher) {}

    /// Downloads everything. False at the first failure, with the error text set ("stopped" when the observer returned
    /// false). Update files stored before it stay and are counted.
    bool Run(const CVelmDownloadObserver& observer = {});

    std::int32_t DownloadedCount() const { return downloadedCount_; }
    const CVelmString& ErrorText() const { return errorText_; }

private:
    bool Fail(const CVelmString& text);
    bool Download(std::size_t index, const CVelmDownloadObserver& observer);
    bool TakePage(const CVelmString& cacheFile);
    bool StoreUpdate(const CVelmString& cacheFile, const CVelmString& fileName);
    CVelmString UpdateFileName(const CVelmString& fileName) const;

    std::vector<CVelmString> urls_;  ///< grows while it is walked
    const CVelmCatalog& catalog_;
    CVelmFetcher& fetcher_;
    std::int32_t downloadedCount_ = 0;
    CVelmString errorText_;
};

}  // namespace velm
