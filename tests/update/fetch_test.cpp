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

CVelmFetchLimits ShortLimits() {
    CVelmFetchLimits limits;
    limits.connect = 5s;
    limits.stall = 2s;
    return limits;
}

class FetchTest : public testing::Test {
protected:
    /// The content of what was fetched, or what became of it in angle brackets.
    std::string Get(const CVelmString& url, const CVelmFetchProgress& progress = {}) {
        const CVelmFetched fetched = CreateHttpFetcher(ShortLimits())->Fetch(url, progress);
        if (fetched.status != FetchStatus::Ok) {
            return fetched.status == FetchStatus::Stopped ? "<stopped>" : "<failed>";
        }
        const auto file = SystemFiles().Open(fetched.cacheFile, FileMode::Read);
        if (!file) {
            return "<no file>";
        }
        std::string content(static_cast<std::size_t>(file->Size().value()), ' ');
        file->Read(content.data(), content.size());
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

    server.Redirect("/moved.txt", server.Address("/page.txt"));
    EXPECT_EQ(Get(server.Url("/moved.txt")), "changed");
}

TEST_F(FetchTest, RefusesEverythingButAWholePageOverHttp) {
    EXPECT_EQ(Get(server.Url("/missing.txt")), "<failed>");
    EXPECT_EQ(Get(u"http://127.0.0.1:1/nobody-listens.txt"), "<failed>");

    server.ServeRaw("/cut.txt", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nVLMUPD\r\nhalf");
    EXPECT_EQ(Get(server.Url("/cut.txt")), "<failed>");

    server.Redirect("/away.txt", "https://127.0.0.1/page.txt");
    EXPECT_EQ(Get(server.Url("/away.txt")), "<failed>");
    server.Redirect("/circle.txt", "/circle.txt");
    EXPECT_EQ(Get(server.Url("/circle.txt")), "<failed>");

    const TemporaryFolder folder;
    folder.WriteText(u"page.txt", "local");
    for (const CVelmString& url :
         {u"file://" + folder.PathOf(u"page.txt"), folder.PathOf(u"page.txt"), CVelmString(u"127.0.0.1/page.txt"),
          CVelmString(u""), CVelmString(u"http://127.0.0.1:1/\0", 20)}) {
        EXPECT_EQ(Get(url), "<failed>") << ToUtf8(url);
    }
}

TEST_F(FetchTest, TakesSixteenMebibytesAndNotOneByteMore) {
    const std::size_t most = 16 << 20;
    server.Serve("/largest.txt", std::string(most, 'x'));
    EXPECT_EQ(Get(server.Url("/largest.txt")).size(), most);

    server.Serve("/larger.txt", std::string(most + 1, 'x'));
    EXPECT_EQ(Get(server.Url("/larger.txt")), "<failed>");

    server.ServeRaw("/unannounced.txt", "HTTP/1.0 200 OK\r\n\r\n" + std::string(most + 1, 'x'));
    EXPECT_EQ(Get(server.Url("/unannounced.txt")), "<failed>");
}

TEST_F(FetchTest, GivesUpOnAServerThatNeverAnswers) {
    server.KeepSilent("/silent.txt");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Get(server.Url("/silent.txt")), "<failed>");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

TEST_F(FetchTest, CanBeStoppedWhileItWaits) {
    server.KeepSilent("/silent.txt");
    int reports = 0;
    EXPECT_EQ(Get(server.Url("/silent.txt"), [&](std::uint64_t) { return ++reports < 3; }), "<stopped>");
    EXPECT_EQ(reports, 3);
}

TEST_F(FetchTest, ReportsTheBytesThatHaveCome) {
    server.Serve("/page.txt", std::string(100'000, 'x'));
    std::uint64_t last = 0;
    Get(server.Url("/page.txt"), [&](std::uint64_t bytes) {
        EXPECT_GE(bytes, last);
        last = bytes;
        return true;
    });
    EXPECT_EQ(last, 100'000U);
}

}  // namespace
}  // namespace velm::test
