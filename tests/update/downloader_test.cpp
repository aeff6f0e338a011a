#include "update/downloader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <string>

#include "support/faulty_files.h"
#include "support/http_server.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"
#include "support/temporary_folder.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

using namespace std::chrono_literals;

CVelmFetchLimits ShortLimits() {
    CVelmFetchLimits limits;
    limits.connect = 5s;
    limits.stall = 2s;
    return limits;
}

std::string UpdateFor(const std::string& name, const std::string& rate = "USD\tEUR\t2") {
    return "VLMUPD\r\n--File Name:" + name + "\r\n" + rate + "\r\n";
}

/// Against a real server, with the system's own fetcher.
class DownloaderTest : public testing::Test {
protected:
    DownloaderTest() {
        for (const char16_t* name : {u"Currency", u"Weight"}) {
            EXPECT_TRUE(MakeConversionDoc(services.Services(), name, {u"USD", u"EUR"})->Save(folder.Path()));
        }
        catalog.SetFolder(folder.Path());
        catalog.ScanFolder();
    }

    /// The answer as "1, 2 downloaded" or "0, 1 downloaded: error text", with the server's address cut off.
    std::string Run(const std::string& path, const CVelmDownloadObserver& observer = {}) {
        const auto fetcher = CreateHttpFetcher(ShortLimits());
        CVelmDownloader downloader(catalog, *fetcher, server.Url(path));
        const bool ok = downloader.Run(observer);
        std::string text = (ok ? "1, " : "0, ") + std::to_string(downloader.DownloadedCount()) + " downloaded";
        if (!downloader.ErrorText().empty()) {
            text += ": " + ToUtf8(downloader.ErrorText());
        }
        const std::string address = server.Address("");
        const std::size_t at = text.find(address);
        return at == std::string::npos ? text : text.erase(at, address.size());
    }

    void ServeList(const std::vector<std::string>& paths, const std::string& lineEnd = "\r\n") {
        std::string list = "VLMLST" + lineEnd;
        for (const std::string& path : paths) {
            list += server.Address(path) + lineEnd;
        }
        server.Serve("/list.txt", list);
    }

    /// Every file of the folder with its bytes.
    std::map<CVelmString, Bytes> Content() const {
        std::map<CVelmString, Bytes> content;
        for (const CVelmString& name : folder.Names()) {
            content[name] = folder.Read(name);
        }
        return content;
    }

    TemporaryFolder folder;
    FaultyFiles files{SystemFiles()};
    TestServices services{files};
    CVelmCatalog catalog{services.Services()};
    HttpServer server;
};

TEST_F(DownloaderTest, StoresEveryUpdateThatTheListNames) {
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        ServeList({"/currency.txt", "/weight.txt", "/more.txt"}, end);
        server.Serve("/currency.txt", UpdateFor("Currency"));
        server.Serve("/weight.txt", UpdateFor("Weight"));
        server.Serve("/more.txt", "VLMLST\n" + server.Address("/unknown.txt"));
        server.Serve("/unknown.txt", UpdateFor("Unknown", end));
        EXPECT_EQ(Run("/list.txt"), "1, 3 downloaded");
    }
    EXPECT_EQ(folder.Names(), (std::vector<CVelmString>{u"Currency.cnv", u"Currency.upd", u"Unknown.upd", u"Weight.cnv",
                                                        u"Weight.upd"}));
    const std::string update = UpdateFor("Weight");
    EXPECT_EQ(folder.Read(u"Weight.upd"), Bytes(update.begin(), update.end()));
}

TEST_F(DownloaderTest, SpellsTheUpdateFileAsTheDocument) {
    server.Serve("/list.txt", UpdateFor("CURRENCY"));
    EXPECT_EQ(Run("/list.txt"), "1, 1 downloaded");
    EXPECT_TRUE(folder.Contains(u"Currency.upd"));
}

TEST_F(DownloaderTest, PagesThatAreNeitherListNorUpdateAreLeftAside) {
    const auto before = Content();
    server.Serve("/list.txt", "<html>Welcome to the network</html>\nhttp://127.0.0.1/trap.txt");
    EXPECT_EQ(Run("/list.txt"), "1, 0 downloaded");
    server.Serve("/list.txt", "VLMUPD\r\nUSD\tEUR\t2\r\n");
    EXPECT_EQ(Run("/list.txt"), "1, 0 downloaded");
    EXPECT_EQ(Content(), before);
}

TEST_F(DownloaderTest, NamesThatAreNoFileNamesAreNotWrittenAnywhere) {
    const auto before = Content();
    std::vector<std::string> paths;
    for (const std::string& name : {std::string("..\\..\\x"), std::string("../x"), std::string("C:x"),
                                    std::string("con"), std::string("a\0b", 3), std::string()}) {
        paths.push_back("/" + std::to_string(paths.size()) + ".txt");
        server.Serve(paths.back(), UpdateFor(name));
    }
    ServeList(paths);
    EXPECT_EQ(Run("/list.txt"), "1, 0 downloaded");
    EXPECT_EQ(server.Requests(paths.back()), 1);
    EXPECT_EQ(Content(), before);
}

TEST_F(DownloaderTest, TheFirstFailureEndsTheRunAndLeavesTheDataFilesAsTheyWere) {
    const auto before = Content();
    server.ServeRaw("/cut.txt", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + UpdateFor("Currency"));
    server.KeepSilent("/silent.txt");
    server.Serve("/large.txt", UpdateFor("Currency") + std::string(16 << 20, 'x'));
    for (const std::string path : {"/missing.txt", "/cut.txt", "/silent.txt", "/large.txt"}) {
        EXPECT_EQ(Run(path), "0, 0 downloaded: Error downloading HTTP file: " + path);
        EXPECT_EQ(Content(), before) << path;

        ServeList({"/weight.txt", path, "/never.txt"});
        server.Serve("/weight.txt", UpdateFor("Weight"));
        EXPECT_EQ(Run("/list.txt"), "0, 1 downloaded: Error downloading HTTP file: " + path);
        EXPECT_EQ(server.Requests("/never.txt"), 0);
        auto after = Content();
        EXPECT_EQ(after.erase(u"Weight.upd"), 1U) << path;
        EXPECT_EQ(after, before) << path;
        SystemFiles().Remove(folder.PathOf(u"Weight.upd"));
    }
}

TEST_F(DownloaderTest, AnUpdateThatCannotBeStoredFailsTheRun) {
    const auto before = Content();
    server.Serve("/list.txt", UpdateFor("Currency"));
    files.freeBytes = 10;
    EXPECT_EQ(Run("/list.txt"),
              "0, 0 downloaded: Error writing update file: " + ToUtf8(folder.PathOf(u"Currency.upd")));
    EXPECT_EQ(Content(), before);
}

TEST_F(DownloaderTest, ReportsItsProgressAndCanBeStopped) {
    ServeList({"/currency.txt", "/weight.txt"});
    server.Serve("/currency.txt", UpdateFor("Currency"));
    server.Serve("/weight.txt", UpdateFor("Weight"));
    std::string seen;
    const auto note = [&](const CVelmDownloadProgress& progress) {
        const std::string now = std::to_string(progress.file) + " of " + std::to_string(progress.fileCount) + ", ";
        if (seen.find(now) == std::string::npos) {
            seen += now;
        }
        return true;
    };
    EXPECT_EQ(Run("/list.txt", note), "1, 2 downloaded");
    EXPECT_EQ(seen, "1 of 1, 2 of 3, 3 of 3, ");

    const auto stopAtThird = [](const CVelmDownloadProgress& progress) { return progress.file < 3; };
    EXPECT_EQ(Run("/list.txt", stopAtThird), "0, 1 downloaded: stopped");

    server.KeepSilent("/list.txt");
    int reports = 0;
    EXPECT_EQ(Run("/list.txt", [&](const CVelmDownloadProgress&) { return ++reports < 4; }),
              "0, 0 downloaded: stopped");
}

/// Gives a path that does not exist for a fetched file.
class LosingFetcher : public CVelmFetcher {
public:
    CVelmFetched Fetch(const CVelmString&, const CVelmFetchProgress&) override {
        return {FetchStatus::Ok, u"no-such-folder/cached"};
    }
};

TEST_F(DownloaderTest, NamesACacheFileThatCannotBeOpened) {
    LosingFetcher fetcher;
    CVelmDownloader downloader(catalog, fetcher, u"http://x");
    EXPECT_FALSE(downloader.Run());
    EXPECT_EQ(ToUtf8(downloader.ErrorText()), "Error opening HTTP cache file: no-such-folder/cached");
}

/// Answers every address with a list that names it twice.
class SelfNamingFetcher : public CVelmFetcher {
public:
    explicit SelfNamingFetcher(MemoryFiles& files) : files_(files) {}

    CVelmFetched Fetch(const CVelmString& url, const CVelmFetchProgress&) override {
        ++fetches;
        const std::string list = "VLMLST\n" + ToUtf8(url) + "\n" + ToUtf8(url) + "\n";
        files_.Add(u"cached", Bytes(list.begin(), list.end()));
        return {FetchStatus::Ok, u"cached"};
    }

    int fetches = 0;

private:
    MemoryFiles& files_;
};

TEST(Downloader, AListThatNamesItselfEndsAfterAThousandFiles) {
    MemoryFiles files;
    TestServices services(files);
    CVelmCatalog catalog(services.Services());
    SelfNamingFetcher fetcher(files);
    CVelmDownloader downloader(catalog, fetcher, u"http://list");
    EXPECT_FALSE(downloader.Run());
    EXPECT_EQ(ToUtf8(downloader.ErrorText()), "Error downloading HTTP file: http://list");
    EXPECT_EQ(fetcher.fetches, 1000);
    EXPECT_TRUE(files.files.empty()) << "nothing stays behind";
}

}  // namespace
}  // namespace velm::test
