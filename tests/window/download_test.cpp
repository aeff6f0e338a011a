#include <gtest/gtest.h>

#include "app/wide_text.h"
#include "platform/services.h"
#include "resource.h"
#include "support/files.h"
#include "support/http_server.h"
#include "support/running_program.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

/// A program whose update address is a server of the test, with rates of dollars and euros.
class DownloadTest : public testing::Test {
protected:
    void Start() {
        SaveConversionFile(program, u"Currency", {{u"dollars", 1.0, u"USD"}, {u"euros", 0.5, u"EUR"}});
        program.StoreSettings(
            [this](CVelmSettings& settings) { SetField(settings.updateUrl, server.Url("/convupd.txt")); });
        ASSERT_TRUE(program.Start());
    }

    /// Lists the pages in the update list.
    void ServeList(std::initializer_list<const char*> pages) {
        std::string list = "VLMLST\r\n";
        for (const char* const page : pages) {
            list += server.Address(page) + "\r\n";
        }
        server.Serve("/convupd.txt", list);
    }

    std::string Title() {
        return program.Ask([](CVelmFrame& frame) { return ToUtf8(frame.TitleButton().Text()); });
    }

    /// What the message box says, once it is there; closes it.
    std::string Message(const wchar_t* icon) {
        const auto box = program.WaitForMessageBox();
        if (!box) {
            ADD_FAILURE() << "no message box comes";
            return {};
        }
        EXPECT_EQ(box->Caption(), "Download");
        EXPECT_EQ(box->Icon(), icon);
        const std::string text = box->Text();
        EXPECT_TRUE(box->Press(IDOK));
        return text;
    }

    HttpServer server;
    RunningProgram program;
};

constexpr const char* RATES =
    "VLMUPD\r\n--File Name: Currency\r\n--Updated: 5 March 2004\r\nUSD\tEUR\t0.8\r\nUSD\tGBP\t0.7\r\n";

TEST_F(DownloadTest, MergesNewRatesIntoTheOpenFile) {
    server.Serve("/currency.txt", RATES);
    server.Serve("/other.txt", "VLMUPD\r\n--File Name: Metals\r\nAU\tUSD\t1\r\n");
    ServeList({"/currency.txt", "/other.txt"});
    Start();
    program.Ask([](CVelmFrame& frame) {
        frame.Document()->items[0]->value = 10;
        frame.Document()->items[0]->state = STATE_VALID;
    });
    program.Command(ID_DOWNLOAD);
    EXPECT_EQ(Message(IDI_INFORMATION), "Updated conversion data files have been successfully downloaded (2).");
    EXPECT_EQ(Title(), "Currency");
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) { return frame.List().Row(1).ValueText() == u"8"; }))
        << "the list shows the new rate";
    const auto saved = LoadFile(program, u"Currency.cnv");
    EXPECT_EQ(static_cast<CVelmConversionDoc&>(*saved).conversions[0]->factor, 0.8);
    EXPECT_NE(ToUtf8(saved->updatedText).find("5 March 2004"), std::string::npos);
    const CVelmString folder = program.DataFolder();
    EXPECT_FALSE(SystemFiles().Exists(folder + u"Currency.upd"));
    EXPECT_TRUE(SystemFiles().Exists(folder + u"Metals.upd")) << "waits for its file";
}

TEST_F(DownloadTest, AFailureIsToldAndWhatCameBeforeItIsMerged) {
    server.Serve("/currency.txt", RATES);
    ServeList({"/currency.txt", "/missing.txt"});
    Start();
    program.Command(ID_DOWNLOAD);
    EXPECT_EQ(Message(IDI_ERROR),
              "Velmora could NOT complete downloading due to a system error: Error downloading HTTP file: " +
                  server.Address("/missing.txt"));
    EXPECT_EQ(static_cast<CVelmConversionDoc&>(*LoadFile(program, u"Currency.cnv")).conversions[0]->factor, 0.8);
}

TEST_F(DownloadTest, EscapeStopsItWhileTheWindowStaysAlive) {
    server.KeepSilent("/silent.txt");
    ServeList({"/silent.txt", "/silent.txt"});
    Start();
    program.Command(ID_DOWNLOAD);
    EXPECT_TRUE(WaitUntil([this] { return server.Requests("/silent.txt") > 0; }));
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) {
        return frame.TitleButton().Text() == u"Downloading 2 of 3";
    })) << Title();
    InvalidateRect(program.Frame(), nullptr, TRUE);
    InvalidateRect(program.List(), nullptr, TRUE);
    EXPECT_TRUE(WaitUntil([this] {
        return !GetUpdateRect(program.Frame(), nullptr, FALSE) && !GetUpdateRect(program.List(), nullptr, FALSE);
    })) << "the window repaints meanwhile";
    program.Type("5");
    program.Key(VK_DELETE);
    program.Key(VK_ESCAPE);
    EXPECT_EQ(Message(IDI_ERROR), "Velmora could NOT complete downloading due to a system error: stopped");
    program.Settle();
    EXPECT_EQ(Title(), "Currency");
    EXPECT_TRUE(ThreadWindows(program.Thread(), L"#32770").empty()) << "keys of the meantime are dropped";
}

TEST_F(DownloadTest, ClosingTheWindowStopsItToo) {
    server.KeepSilent("/convupd.txt");
    Start();
    program.Command(ID_DOWNLOAD);
    EXPECT_TRUE(WaitUntil([this] { return server.Requests("/convupd.txt") > 0; }));
    EXPECT_TRUE(program.Close());
}

}  // namespace
}  // namespace velm::test
