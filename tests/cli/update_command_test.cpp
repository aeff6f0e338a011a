#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "cli/process.h"
#include "cli/user_options.h"
#include "support/http_server.h"

namespace velm::test {

namespace {

constexpr const char* CURRENCY =
    "title = 'Currency'\n[[item]]\nname = 'Euro'\nid = 'EUR'\n[[item]]\nname = 'Dollar'\nid = 'USD'\n"
    "[[conversion]]\nfrom = 'EUR'\nto = 'USD'\nfactor = 1.5\n";

std::string Update(const std::string& name, const std::string& rate) {
    return "VLMUPD\r\n--File Name:" + name + "\r\n--Updated:2024-07-05\r\nEUR\tUSD\t" + rate + "\r\n";
}

class UpdateCommand : public testing::Test {
protected:
    UpdateCommand() {
        data.Add("Currency.cnv", CURRENCY);
        data.Add("Other.cnv", CURRENCY);
        data.Add("Tip.cal", "title = 'Tip'\n[[item]]\nname = 'Bill'\nid = 'b'\n");
        server.Serve("/list.txt", "VLMLST\n" + server.Address("/currency.txt") + "\n" + server.Address("/other.txt"));
        server.Serve("/currency.txt", Update("Currency", "2"));
        server.Serve("/other.txt", Update("Other", "3"));
    }

    Words With(Words arguments) const { return data.With(std::move(arguments)); }
    std::string List() const { return server.Address("/list.txt"); }
    std::string Rate(const std::string& file) const { return Out(With({"convert", file, "EUR", "1", "--to", "USD"})); }

    DataSources data;
    UserOptionsForTest options;
    HttpServer server;
};

TEST_F(UpdateCommand, DownloadsAndMergesIntoEveryFile) {
    EXPECT_EQ(Out(With({"update", "--url", List()})),
              "Updated conversion data files have been successfully downloaded (2).\n"
              "Currency.cnv: Downloaded file timestamp: 2024-07-05\n"
              "Other.cnv: Downloaded file timestamp: 2024-07-05\n");
    EXPECT_EQ(Rate("Currency"), "2\n");
    EXPECT_EQ(Rate("Other"), "3\n");
    EXPECT_FALSE(data.Folder().Contains(u"Currency.upd"));
}

TEST_F(UpdateCommand, MergesIntoTheFilesThatAreNamedAndUsesTheAddressOfTheOptions) {
    EXPECT_EQ(Out({"options", "update-url", List()}), "");
    EXPECT_EQ(Out(With({"update", "other"})),
              "Updated conversion data files have been successfully downloaded (2).\n"
              "Other.cnv: Downloaded file timestamp: 2024-07-05\n");
    EXPECT_EQ(Rate("Currency"), "1.5\n");
    EXPECT_TRUE(data.Folder().Contains(u"Currency.upd")) << "the other one waits";
}

TEST_F(UpdateCommand, ReportsAFailedDownloadAndMergesWhatCameBeforeIt) {
    const std::string other = server.Address("/other.txt");
    server.ServeRaw("/other.txt", "HTTP/1.1 503 Busy\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    const ProcessResult result = RunVelmora(With({"update", "--url", List()}));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "velmora: Velmora could NOT complete downloading due to a system error: "
              "Error downloading HTTP file: " +
                  other + "\n");
    EXPECT_EQ(result.out, "Currency.cnv: Downloaded file timestamp: 2024-07-05\n");
    EXPECT_EQ(Rate("Currency"), "2\n");
    EXPECT_EQ(Rate("Other"), "1.5\n");
}

/// What a command writes to a terminal.
std::string OnATerminal(const Words& arguments) {
    std::string line = "script -qec '" VELMORA_PROGRAM;
    for (const std::string& argument : arguments) {
        line += " " + argument;
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen((line + "' /dev/null").c_str(), "r"), pclose);
    std::string text;
    for (int c = pipe ? std::fgetc(pipe.get()) : EOF; c != EOF; c = std::fgetc(pipe.get())) {
        text += static_cast<char>(c);
    }
    return text;
}

TEST_F(UpdateCommand, ShowsItsProgressOnATerminal) {
    const std::string shown = OnATerminal(With({"update", "--url", List()}));
    for (const std::string progress : {"Downloading 1 of 1, 0 bytes", "Downloading 3 of 3, ", "downloaded (2)."}) {
        EXPECT_NE(shown.find(progress), std::string::npos) << progress << " is missing from:\n" << shown;
    }
}

TEST_F(UpdateCommand, RefusesAFileThatCannotBeUpdatedBeforeItDownloads) {
    EXPECT_EQ(Refusal(With({"update", "--url", List(), "Tip"})),
              "1: \"Tip\" is not a conversion file of the data folder");
    EXPECT_EQ(Refusal(With({"update", "--url", List(), "Curency"})).substr(0, 37),
              "1: there is no data file \"Curency\" in");
    EXPECT_EQ(server.Requests("/list.txt"), 0);
}

TEST_F(UpdateCommand, RefreshesRatesFromItsOwnFeed) {
    const TemporaryFolder work;
    work.WriteText(u"rates.txt", "USD 1.0831\n");
    ASSERT_EQ(RunVelmora({"feed", "--rates", ToUtf8(work.PathOf(u"rates.txt")), "--base-url", server.Address("/feed"),
                          "--out", ToUtf8(work.Path())})
                  .status,
              0);
    for (const std::string name : {"convupd.txt", "Currency.upd.txt"}) {
        const Bytes bytes = work.Read(FromUtf8(name));
        server.Serve("/feed/" + name, std::string(bytes.begin(), bytes.end()));
    }
    EXPECT_EQ(RunVelmora(With({"update", "--url", server.Address("/feed/convupd.txt")})).status, 0);
    EXPECT_EQ(Rate("Currency"), "1.0831\n");
}

}  // namespace

}  // namespace velm::test
