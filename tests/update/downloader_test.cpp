#include "update/downloader.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"
#include "support/sample_documents.h"
#include "update/page_fetcher.h"
#include "update/table_download.h"

namespace velm::test {
namespace {

std::string UpdateFor(const std::string& name) {
    return "VLMUPD\r\n--File Name:" + name + "\r\nUSD\tEUR\t2\r\n";
}

class DownloaderTest : public testing::Test {
protected:
    DownloaderTest() {
        catalog.SetFolder(u"data");
        for (const char16_t* name : {u"Currency", u"Weight"}) {
            EXPECT_TRUE(MakeConversionDoc(services.Services(), name)->Save(catalog.Folder()));
        }
        catalog.ScanFolder();
        fetcher.pages = {{"http://currency", UpdateFor("CURRENCY")}, {"http://weight", UpdateFor("WEIGHT")}};
    }

    /// The answer as "1, 2 downloaded" or "0, 1 downloaded: error text".
    std::string Run(const std::string& url, const CVelmDownloadObserver& observer = {}) {
        CVelmDownloader downloader(catalog, fetcher, FromUtf8(url));
        const bool ok = downloader.Run(observer);
        const std::string error = ToUtf8(downloader.ErrorText());
        return std::to_string(ok) + ", " + std::to_string(downloader.DownloadedCount()) + " downloaded" +
               (error.empty() ? "" : ": " + error);
    }

    void ListPages(const std::vector<std::string>& urls) {
        fetcher.pages["http://list"] = "VLMLST\n" + Join(urls, "\n");
    }

    static constexpr const char* NOTHING = "Currency.cnv Weight.cnv ";

    MemoryFiles files;
    TestServices services{files};
    CVelmCatalog catalog{services.Services()};
    PageFetcher fetcher{[this](const std::string& page) {
        files.AddText(u"cached", page);
        return CVelmString(u"cached");
    }};
};

TEST_F(DownloaderTest, TheFirstFailureEndsTheRunAndKeepsWhatCameBefore) {
    EXPECT_EQ(Run("http://missing"), "0, 0 downloaded: Error downloading HTTP file: http://missing");
    EXPECT_EQ(files.Names(), NOTHING);
    ListPages({"http://weight", "http://missing", "http://currency"});
    EXPECT_EQ(Run("http://list"), "0, 1 downloaded: Error downloading HTTP file: http://missing");
    EXPECT_EQ(fetcher.requests["http://currency"], 0);
    EXPECT_EQ(files.Names(), "Currency.cnv Weight.cnv Weight.upd ");

    files.freeBytes = 10;
    EXPECT_EQ(Run("http://currency"),
              "0, 0 downloaded: Error writing update file: " + ToUtf8(catalog.Folder()) + "Currency.upd");
    EXPECT_EQ(files.Names(), "Currency.cnv Weight.cnv Weight.upd ");

    PageFetcher losing([](const std::string&) { return CVelmString(u"nowhere"); });
    losing.pages = fetcher.pages;
    CVelmDownloader downloader(catalog, losing, u"http://list");
    EXPECT_FALSE(downloader.Run());
    EXPECT_EQ(ToUtf8(downloader.ErrorText()), "Error opening HTTP cache file: nowhere");
}

TEST_F(DownloaderTest, ReportsItsProgressAndCanBeStopped) {
    ListPages({"http://currency", "http://weight"});
    std::string seen;
    const auto note = [&](const CVelmDownloadProgress& progress) {
        seen += std::to_string(progress.file) + "/" + std::to_string(progress.fileCount) + ":" +
                std::to_string(progress.bytes) + " ";
        return true;
    };
    EXPECT_EQ(Run("http://list", note), "1, 2 downloaded");
    EXPECT_EQ(seen, "1/1:0 1/1:36 2/3:0 2/3:41 3/3:0 3/3:39 ");
    const auto stopAtThird = [](const CVelmDownloadProgress& progress) { return progress.file < 3; };
    EXPECT_EQ(Run("http://list", stopAtThird), "0, 1 downloaded: stopped");
    const auto stopAtBytes = [](const CVelmDownloadProgress& progress) { return progress.bytes == 0; };
    EXPECT_EQ(Run("http://list", stopAtBytes), "0, 0 downloaded: stopped");
}

TEST_F(DownloaderTest, AListThatNamesItselfEndsAfterAThousandFiles) {
    ListPages({"http://list", "http://list"});
    EXPECT_EQ(Run("http://list"), "0, 0 downloaded: Error downloading HTTP file: http://list");
    EXPECT_EQ(fetcher.requests["http://list"], 1000);
    EXPECT_EQ(files.Names(), NOTHING);
}

TEST_F(DownloaderTest, ATableIsFetchedAsItIs) {
    for (const CVelmStringView url : {u"http://x/daily.xml", u"HTTPS://x/y.CSV?day=1", u"https://x/a.csv#b"}) {
        EXPECT_TRUE(IsTableAddress(url)) << ToUtf8(url);
    }
    for (const CVelmStringView url : {u"http://x/convupd.txt", u"http://x/?a.xml", u"file:///a.xml", u"a.csv", u""}) {
        EXPECT_FALSE(IsTableAddress(url)) << ToUtf8(url);
    }
    fetcher.pages["https://table"] = "USD 1.5";
    CVelmString error;
    EXPECT_EQ(DownloadTable(fetcher, files, u"https://table", {}, error), "USD 1.5");
    EXPECT_EQ(files.Names(), NOTHING) << "the local copy is removed";
    EXPECT_FALSE(DownloadTable(fetcher, files, u"https://none", {}, error));
    EXPECT_EQ(ToUtf8(error), "Error downloading HTTP file: https://none");
    const auto stop = [](const CVelmDownloadProgress& progress) { return progress.bytes == 0; };
    EXPECT_FALSE(DownloadTable(fetcher, files, u"https://table", stop, error));
    EXPECT_EQ(ToUtf8(error), "stopped");
}

}  // namespace
}  // namespace velm::test
