#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "platform/fetch.h"
#include "platform/file.h"
#include "support/http_server.h"
#include "support/temporary_folder.h"

namespace velm::test {
namespace {

using namespace std::chrono_literals;

class FetchTest : public testing::Test {
protected:
    /// The content of what was fetched, or what became of it in angle brackets.
    std::string Get(const CVelmString& url, const CVelmFetchProgress& progress = {}) {
        CVelmFetchLimits limits;
        limits.connect = 5s;
        limits.stall = 2s;
        const CVelmFetched fetched = CreateHttpFetcher(limits)->Fetch(url, progress);
        if (fetched.status != FetchStatus::Ok) {
            return fetched.status == FetchStatus::Stopped ? "<stopped>" : "<failed>";
        }
        const auto file = SystemFiles().Open(fetched.cacheFile, FileMode::Read);
        std::string content(file ? static_cast<std::size_t>(file->Size().value()) : 0, ' ');
        EXPECT_TRUE(file && file->Read(content.data(), content.size()) == std::ssize(content));
        SystemFiles().Remove(fetched.cacheFile);
        return content;
    }

    HttpServer server;
};

TEST_F(FetchTest, BringsTheBytesOfThePageAsItIsNow) {
    const std::string bytes("VLMLST\r\n\0\xFF", 10);
    server.Serve("/page.txt", bytes);
    EXPECT_EQ(Get(server.Url("/page.txt")), bytes);
    server.Serve("/page.txt", "changed");
    EXPECT_EQ(Get(server.Url("/page.txt")), "changed") << "a copy kept from before was taken for the page";
    server.ServeRaw("/copy.txt", "HTTP/1.1 203 From elsewhere\r\nContent-Length: 4\r\n\r\ncopy");
    EXPECT_EQ(Get(server.Url("/copy.txt")), "copy");
    server.Redirect("/moved.txt", server.Address("/page.txt"));
    EXPECT_EQ(Get(server.Url("/moved.txt")), "changed");
}

TEST_F(FetchTest, RefusesEverythingButAWholePageOverHttp) {
    const TemporaryFolder folder;
    folder.WriteText(u"page.txt", "local");
    server.ServeRaw("/cut.txt", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nVLMUPD\r\nhalf");
    server.ServeRaw("/piece.txt", "HTTP/1.1 206 A piece\r\nContent-Length: 6\r\n\r\nVLMUPD");
    server.ServeRaw("/choice.txt", "HTTP/1.1 300 One of these\r\nContent-Length: 6\r\n\r\nVLMUPD");
    server.Redirect("/away.txt", "https://127.0.0.1/page.txt");
    server.Redirect("/circle.txt", "/circle.txt");
    for (const CVelmString& url :
         {server.Url("/missing.txt"), server.Url("/cut.txt"), server.Url("/piece.txt"), server.Url("/choice.txt"),
          server.Url("/away.txt"), server.Url("/circle.txt"), u"file://" + folder.PathOf(u"page.txt"),
          folder.PathOf(u"page.txt"), CVelmString(u"127.0.0.1/page.txt"), CVelmString(),
          CVelmString(u"http://127.0.0.1:1/nobody-listens"), CVelmString(u"http://127.0.0.1:1/\0", 20)}) {
        EXPECT_EQ(Get(url), "<failed>") << ToUtf8(url);
    }
}

TEST_F(FetchTest, TakesSixteenMebibytesAndNotOneByteMore) {
    const std::string most(16 << 20, 'x');
    server.Serve("/largest.txt", most);
    std::uint64_t last = 0;
    const auto note = [&](std::uint64_t bytes) {
        EXPECT_GE(bytes, last);
        last = bytes;
        return true;
    };
    EXPECT_EQ(Get(server.Url("/largest.txt"), note).size(), most.size());
    EXPECT_EQ(last, most.size()) << "the bytes that have come are reported";
    server.Serve("/larger.txt", most + "x");
    EXPECT_EQ(Get(server.Url("/larger.txt")), "<failed>");
    server.ServeRaw("/unannounced.txt", "HTTP/1.0 200 OK\r\n\r\n" + most + "x");
    EXPECT_EQ(Get(server.Url("/unannounced.txt")), "<failed>");
}

TEST_F(FetchTest, GivesUpOnAServerThatNeverAnswersAndCanBeStoppedBefore) {
    server.ServeRaw("/silent.txt", {});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Get(server.Url("/silent.txt")), "<failed>");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
    int reports = 0;
    EXPECT_EQ(Get(server.Url("/silent.txt"), [&](std::uint64_t) { return ++reports < 3; }), "<stopped>");
    EXPECT_EQ(reports, 3);
}

}  // namespace
}  // namespace velm::test
