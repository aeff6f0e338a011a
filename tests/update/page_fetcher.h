#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/fetch.h"

namespace velm::test {

/// Serves pages as if from the network; any other address fails.
class PageFetcher : public CVelmFetcher {
public:
    /// `store` puts a page on the disk and gives the path of this copy.
    explicit PageFetcher(std::function<CVelmString(const std::string&)> store) : store_(std::move(store)) {}

    CVelmFetched Fetch(const CVelmString& url, const CVelmFetchProgress& progress) override {
        ++requests[ToUtf8(url)];
        const auto page = pages.find(ToUtf8(url));
        if (page == pages.end()) {
            return {};
        }
        return progress(page->second.size()) ? CVelmFetched{FetchStatus::Ok, store_(page->second)}
                                             : CVelmFetched{FetchStatus::Stopped, {}};
    }

    std::map<std::string, std::string> pages;
    std::map<std::string, int> requests;

private:
    std::function<CVelmString(const std::string&)> store_;
};

}  // namespace velm::test
