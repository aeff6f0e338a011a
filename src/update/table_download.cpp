#include "update/table_download.h"

#include "platform/scope_exit.h"
#include "update/rates_table.h"

namespace velm {

bool IsTableAddress(CVelmStringView url) {
    const CVelmStringView path = url.substr(0, url.find_first_of(u"?#"));
    return IsWebAddress(path) && (EndsWithNoCase(path, u".xml") || EndsWithNoCase(path, u".csv"));
}

std::optional<std::string> DownloadTable(CVelmFetcher& fetcher, CVelmFileSystem& files, const CVelmString& url,
                                         const CVelmDownloadObserver& observer, CVelmString& error) {
    const auto report = [&observer](std::uint64_t bytes) { return !observer || observer({1, 1, bytes}); };
    const CVelmFetched fetched = report(0) ? fetcher.Fetch(url, report) : CVelmFetched{FetchStatus::Stopped, {}};
    if (fetched.status != FetchStatus::Ok) {
        error = DownloadErrorText(fetched.status, url);
        return std::nullopt;
    }
    const CVelmScopeExit removal([&] { files.Remove(fetched.cacheFile); });
    const auto file = files.Open(fetched.cacheFile, FileMode::Read);
    std::string bytes;
    if (file == nullptr || !ReadToEnd(*file, MAX_TABLE_SIZE + 1, bytes)) {
        error = u"Error opening HTTP cache file: " + fetched.cacheFile;
        return std::nullopt;
    }
    return bytes;
}

}  // namespace velm
