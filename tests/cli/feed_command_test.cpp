#include <gtest/gtest.h>

#include <algorithm>

#include "cli/process.h"
#include "support/temporary_folder.h"

namespace velm::test {

namespace {

class FeedCommand : public testing::Test {
protected:
    Words Arguments(std::string_view rates, Words more = {}) {
        work.WriteText(u"rates", rates);
        Words words{"feed", "--rates", ToUtf8(work.PathOf(u"rates")), "--out", ToUtf8(work.PathOf(u"out"))};
        words.insert(words.end(), more.begin(), more.end());
        if (std::find(more.begin(), more.end(), "--base-url") == more.end()) {
            words.insert(words.end(), {"--base-url", "http://127.0.0.1/velm/"});
        }
        return words;
    }

    std::string Written(CVelmStringView name) const {
        const Bytes bytes = work.Read(u"out/" + CVelmString(name));
        return {bytes.begin(), bytes.end()};
    }

    /// The update file of a table, or why there is none.
    std::string Feed(std::string_view rates, Words more = {}) {
        const ProcessResult result = RunVelmora(Arguments(rates, std::move(more)));
        return result.status == 0 ? Written(u"Currency.upd.txt") : result.err;
    }

    TemporaryFolder work;
};

constexpr const char* EXPECTED =
    "VLMUPD\r\n--File Name:Currency\r\n--Updated:2024-07-05\r\nEUR\tUSD\t1.0831\r\nEUR\tJPY\t174.13\r\n";

TEST_F(FeedCommand, ReadsTheCentralBanksXml) {
    const std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<gesmes:Envelope xmlns:gesmes=\"http://www.gesmes.org/xml/2002-08-01\" "
        "xmlns=\"http://www.ecb.int/vocabulary/2002-08-01/eurofxref\">\n"
        "<gesmes:subject>Reference rates</gesmes:subject><Cube>\n"
        "<Cube time='2024-07-05'><Cube currency='USD' rate='1.0831'/><Cube currency='JPY' rate='174.13'/></Cube>\n"
        "<Cube time='2024-07-04'><Cube currency='USD' rate='9'/></Cube>\n"
        "</Cube></gesmes:Envelope>\n";
    EXPECT_EQ(Feed(xml), EXPECTED);
    EXPECT_EQ(Written(u"convupd.txt"), "VLMLST\r\nhttp://127.0.0.1/velm/Currency.upd.txt\r\n");
    EXPECT_EQ(Feed("<Cube><Cube>"), "velmora: the rates table is no XML: Start-end tags mismatch\n");
    EXPECT_EQ(Feed("<html/>"), "velmora: the rates table has no rates\n");
}

TEST_F(FeedCommand, ReadsTheCentralBanksCsvAndPlainTables) {
    EXPECT_EQ(Feed("Date, USD, JPY, RUB, \n2024-07-05, 1.0831, 174.13, N/A, \n2024-07-04, 9, 9, 9, \n"), EXPECTED);
    EXPECT_EQ(Feed("# my own\r\ndate 2024-07-05\r\nUSD\t1.0831\r\n\r\nEUR 1\r\nJPY , 174.13"), EXPECTED);
    EXPECT_EQ(Feed("base USD\nKWD;3e-1\n"), "VLMUPD\r\n--File Name:Currency\r\nUSD\tKWD\t0.3\r\n");
}

TEST_F(FeedCommand, RefusesTablesThatAreNotWhole) {
    EXPECT_EQ(Feed(""), "velmora: the rates table is empty\n");
    EXPECT_EQ(Feed("EUR 1\n"), "velmora: the rates table has no rates\n");
    EXPECT_EQ(Feed("USD\n"), "velmora: the rates table has a line without a rate: \"USD\"\n");
    EXPECT_EQ(Feed("USD 1\nUSD 2\n"), "velmora: the rates table has \"USD\" twice\n");
    EXPECT_EQ(Feed("Date,USD,JPY\n2024-07-05,1\n"),
              "velmora: the rates table needs one rate for each code of its first line\n");
    for (const std::string rate : {"0", "-1", "1.0x", "inf", "1,5"}) {
        EXPECT_EQ(Feed("USD " + rate), "velmora: the rate of \"USD\" is no positive number: \"" + rate + "\"\n");
    }
    EXPECT_EQ(work.Names(), std::vector<CVelmString>{u"rates"}) << "nothing is written";
}

TEST_F(FeedCommand, NamesTheDataFileAndItsAddress) {
    EXPECT_EQ(RunVelmora(Arguments("USD 1.5", {"--file", "M\u00fcnz 1"})).status, 0);
    EXPECT_EQ(Written(u"M\u00fcnz 1.upd.txt"), "VLMUPD\r\n--File Name:M\xFCnz 1\r\nEUR\tUSD\t1.5\r\n");
    EXPECT_EQ(Written(u"convupd.txt"), "VLMLST\r\nhttp://127.0.0.1/velm/M%C3%BCnz%201.upd.txt\r\n");
    for (const std::string name : {"con", "../x", "\u20ac"}) {
        EXPECT_EQ(Refusal(Arguments("USD 1.5", {"--file", name})),
                  "1: \"" + name + "\" cannot be the name of a data file that is updated over the network");
    }
    EXPECT_EQ(Refusal(Arguments("USD 1.5", {"--base-url", "https://x"})),
              "1: \"https://x\" does not begin with http://");
    EXPECT_EQ(Refusal({"feed"}), "2: feed needs --rates, --base-url and --out");
}

}  // namespace

}  // namespace velm::test
