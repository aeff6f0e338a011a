#include "update/downloader.h"

#include <algorithm>

#include "model/file_replacement.h"
#include "model/file_stream.h"
#include "platform/scope_exit.h"
#include "update/update_file.h"

namespace velm {

CVelmString DownloadErrorText(FetchStatus status, const CVelmString& url) {
    return status == FetchStatus::Stopped ? CVelmString(u"stopped") : u"Error downloading HTTP file: " + url;
}

bool CVelmDownloader::Run(const CVelmDownloadObserver& observer) {
    downloadedCount_ = 0;
    errorText_.clear();
    for (std::size_t index = 0; index < urls_.size(); ++index) {
        if (!Download(index, observer)) {
            return false;
        }
    }
    return true;
}

bool CVelmDownloader::Fail(const CVelmString& text) {
    errorText_ = text;
    return false;
}

bool CVelmDownloader::Download(std::size_t index, const CVelmDownloadObserver& observer) {
    // Deliberate: an address that stands twice is fetched twice. MAX_DOWNLOADS ends a list that names itself.
    // A copy, because the list grows.
    const CVelmString url = urls_[index];
    const auto report = [&](std::uint64_t bytes) { return !observer || observer({index + 1, urls_.size(), bytes}); };
    if (index >= MAX_DOWNLOADS) {
        return Fail(DownloadErrorText(FetchStatus::Failed, url));
    }
    const CVelmFetched fetched = report(0) ? fetcher_.Fetch(url, report) : CVelmFetched{FetchStatus::Stopped, {}};
    if (fetched.status != FetchStatus::Ok) {
        return Fail(DownloadErrorText(fetched.status, url));
    }
    return TakePage(fetched.cacheFile);
}

bool CVelmDownloader::TakePage(const CVelmString& cacheFile) {
    const CVelmServices& services = catalog_.Services();
    const CVelmScopeExit removal([&] { services.files.Remove(cacheFile); });
    CVelmFileStream stream(services.files, services.clock);
    if (!stream.OpenRead(cacheFile)) {
        return Fail(u"Error opening HTTP cache file: " + cacheFile);
    }
    // One address above the limit is enough to detect that there are too many.
    const CVelmUpdatePage page = ReadUpdatePage(stream, MAX_DOWNLOADS + 1 - std::min(urls_.size(), MAX_DOWNLOADS));
    stream.Close();
    urls_.insert(urls_.end(), page.urls.begin(), page.urls.end());
    if (page.kind != UpdatePageKind::Update || !IsUsableFileName(page.fileName)) {
        return true;
    }
    return StoreUpdate(cacheFile, page.fileName);
}

bool CVelmDownloader::StoreUpdate(const CVelmString& cacheFile, const CVelmString& fileName) {
    const CVelmString path = catalog_.Folder() + UpdateFileName(fileName);
    if (!CopyFileTo(catalog_.Services().files, cacheFile, path)) {
        return Fail(u"Error writing update file: " + path);
    }
    ++downloadedCount_;
    return true;
}

/// Spelled like the existing update file, otherwise like its document, so that the two differ in no letter case.
CVelmString CVelmDownloader::UpdateFileName(const CVelmString& fileName) const {
    const CVelmString name = fileName + CVelmString(UPDATE_EXTENSION);
    if (auto existing = FindInFolder(catalog_.Services().files, catalog_.Folder(), name)) {
        return *existing;
    }
    const int document = catalog_.FindDocument(WithExtension(fileName, KIND_CONVERSION));
    return document < 0
               ? name
               : catalog_.documents[static_cast<std::size_t>(document)]->fileName + CVelmString(UPDATE_EXTENSION);
}

}  // namespace velm
