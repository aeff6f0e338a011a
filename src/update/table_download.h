#pragma once

#include <optional>
#include <string>

#include "platform/fetch.h"
#include "platform/file.h"
#include "platform/text.h"
#include "update/downloader.h"

namespace velm {

/// Whether an address names a table of rates rather than an update list: its path ends in ".xml" or ".csv".
bool IsTableAddress(CVelmStringView url);

/// Fetches a table as it is. Nothing, with the reason, on failure ("stopped" when the observer returned false).
std::optional<std::string> DownloadTable(CVelmFetcher& fetcher, CVelmFileSystem& files, const CVelmString& url,
                                         const CVelmDownloadObserver& observer, CVelmString& error);

}  // namespace velm
