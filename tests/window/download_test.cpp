#include <gtest/gtest.h>

#include "platform/services.h"
#include "resource.h"
#include "support/http_server.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

/// A program whose update address is a server of the test, with rates of dollars and euros.
class DownloadTest : public ProgramTest {
protected:
    /// Starts the download of a list of pages.
    void Download(std::initializer_list<const char*> pages) {
        std::string list = "VLMLST\r\n";
        for (const char* const page : pages) {
            list += server.Address(page) + "\r\n";
        }
        server.Serve("/convupd.txt", list);
        server.Serve(
            "/currency.txt",
            "VLMUPD\r\n--File Name: Currency\r\n--Updated: 5 March 2004\r\nUSD\tEUR\t0.8\r\nUSD\tGBP\t0.7\r\n");
        server.KeepSilent("/silent.txt");
        program.StoreSettings(
            [this](CVelmSettings& settings) { SetField(settings.updateUrl, server.Url("/convupd.txt")); });
        Start("Currency = dollars|USD, euros|EUR|0.5");
        Give(0, 10);
        program.Command(ID_DOWNLOAD);
    }

    std::string Saved() { return Do("saved Currency.cnv"); }

    const std::string updated = "Currency (): dollars|USD|, euros|EUR|; USD*0.8=EUR";
    const std::string failed = "x Download: Velmora could NOT complete downloading due to a system error: ";
    HttpServer server;
};

TEST_F(DownloadTest, MergesNewRatesIntoTheOpenFile) {
    server.Serve("/other.txt", "VLMUPD\r\n--File Name: Metals\r\nAU\tUSD\t1\r\n");
    Download({"/currency.txt", "/other.txt"});
    EXPECT_EQ(program.Answer(), "i Download: Updated conversion data files have been successfully downloaded (2).");
    EXPECT_EQ(Title(), "Currency");
    EXPECT_EQ(Rows(), "dollars=10, euros=8") << "the list shows the new rate";
    EXPECT_EQ(Saved(), updated);
    EXPECT_NE(ToUtf8(Document().updatedText).find("5 March 2004"), std::string::npos);
    EXPECT_FALSE(SystemFiles().Exists(program.DataFolder() + u"Currency.upd"));
    EXPECT_TRUE(SystemFiles().Exists(program.DataFolder() + u"Metals.upd")) << "waits for its file";
}

TEST_F(DownloadTest, AFailureIsToldAndWhatCameBeforeItIsMerged) {
    Download({"/currency.txt", "/missing.txt"});
    EXPECT_EQ(program.Answer(), failed + "Error downloading HTTP file: " + server.Address("/missing.txt"));
    EXPECT_EQ(Saved(), updated);
}

TEST_F(DownloadTest, EscapeStopsItWhileTheWindowStaysAlive) {
    Download({"/silent.txt", "/silent.txt"});
    EXPECT_TRUE(WaitUntil([this] { return server.Requests("/silent.txt") > 0; }));
    EXPECT_BECOMES(Title(), "Downloading 2 of 3");
    for (const HWND window : {program.Frame(), program.List()}) {
        InvalidateRect(window, nullptr, TRUE);
        EXPECT_TRUE(WaitUntil([window] { return !GetUpdateRect(window, nullptr, FALSE); })) << "it repaints meanwhile";
    }
    program.Type("5");
    for (const int key : {VK_DELETE, VK_ESCAPE}) {
        PostMessageW(program.List(), WM_KEYDOWN, key, 1);
    }
    EXPECT_EQ(program.Answer(), failed + "stopped");
    EXPECT_EQ(Title(), "Currency");
    EXPECT_FALSE(program.IsAsking()) << "keys of the meantime are dropped";
    program.Command(ID_DOWNLOAD);
    EXPECT_TRUE(WaitUntil([this] { return server.Requests("/silent.txt") > 1; }));
    PostMessageW(program.List(), WM_SYSKEYDOWN, VK_F4, 1);
    EXPECT_TRUE(WaitUntil([this] { return !IsWindow(program.Frame()); })) << "closing the window stops it too";
}

}  // namespace
}  // namespace velm::test
