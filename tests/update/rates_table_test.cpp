#include "update/rates_table.h"

#include <gtest/gtest.h>

namespace velm::test {
namespace {

/// "EUR 2024-07-05: USD*1.0831 JPY*174.13", or the reason.
std::string Read(std::string_view bytes) {
    CVelmString error;
    const auto table = ReadRatesTable(bytes, error);
    if (!table) {
        const std::string prefix = "the table of rates cannot be read: ";
        const std::string text = ToUtf8(error);
        return text.starts_with(prefix) ? text.substr(prefix.size()) : "no reason";
    }
    std::string text = ToUtf8(table->base + u' ' + (table->day ? DayText(*table->day) : u"undated")) + ":";
    for (const CVelmTableRate& rate : table->rates) {
        text += " " + ToUtf8(rate.code) + "*" + std::to_string(rate.value).substr(0, 5);
    }
    return text;
}

std::string Cubes(const std::string& inside) {
    return "<?xml version='1.0'?><e:Envelope xmlns:e='x'><Cube>" + inside + "</Cube></e:Envelope>";
}

TEST(RatesTable, TheXmlOfTheCentralBank) {
    const std::string latest =
        "<Cube time='2024-07-05'><Cube currency='USD' rate='1.08310'/>"
        "<Cube currency='JPY' rate='174.13'></Cube></Cube>";
    const std::string before = "<Cube time='2024-07-04'><Cube currency='USD' rate='9'/></Cube>";
    const std::string expected = "EUR 2024-07-05: USD*1.083 JPY*174.1";
    EXPECT_EQ(Read(Cubes(latest)), expected);
    EXPECT_EQ(Read(Cubes(latest + before)), expected);
    EXPECT_EQ(Read("\xEF\xBB\xBF \r\n" + Cubes(before + "<!-- <Cube> --><?x <?>" + latest)), expected);
    EXPECT_EQ(
        Read(Cubes("<Cube time=\"2024-07-05\"><Cube rate = '&#x32;' currency='U&#83;D' />&amp;<![CDATA[<]]></Cube>")),
        "EUR 2024-07-05: USD*2.000");
    EXPECT_EQ(Read(Cubes("<Cube currency='USD' rate='2'/>")), "EUR undated: USD*2.000");
    EXPECT_EQ(Read("<html><p class='a'>Log in</p></html>"), "it has no rates");
}

TEST(RatesTable, XmlThatIsNotWholeOrNotSafeIsRefused) {
    const std::string whole =
        Cubes("<Cube time='2024-07-05'><Cube currency='USD' rate='1.5'/><Cube currency='JPY' rate='2'/></Cube>");
    for (std::size_t length = 1; length < whole.size(); ++length) {
        EXPECT_FALSE(Read(whole.substr(0, length)).starts_with("EUR")) << length;
    }
    for (const std::string text :
         {"<!DOCTYPE a [<!ENTITY b 'c'>]><a/>", "<a>&b;</a>", "<a b='&c;'/>", "<a b='&#0;'/>", "<a b='&#xD800;'/>",
          "<a b='&#12345678;'/>", "<a/><b/>", "<a/>b", "<a></b>", "<a b='1' b='2'/>", "<a b='1'c='2'/>", "<a b=1/>",
          "<a b='<'/>", "< a/>", "</a>", "<a", "<", "<!--", "<a><![CDATA[</a>"}) {
        EXPECT_FALSE(Read(text).starts_with("EUR") || Read(text) == "it has no rates") << text;
    }
    std::string deep;
    for (int i = 0; i < 100'000; ++i) {
        deep += "<a>";
    }
    EXPECT_EQ(Read(deep), "the elements are nested too deeply");
}

TEST(RatesTable, ItsCsvAndPlainTables) {
    for (const char* const csv :
         {"Date, USD, JPY, \n05 July 2024, 1.0831, 174.13, \n", "Date,USD,JPY,\r\n2024-07-05,1.0831,174.13,\r\n",
          "Date,USD,JPY,SKK\n2024-07-04,9,9,9\n2024-07-05,1.0831,174.13,N/A",
          "date 2024-07-05\n# rates\n\nUSD 1.0831\r\n  JPY\t174.13  ",
          "\xEF\xBB\xBFUSD;1.0831\rJPY , 1.7413e2\rdate 5 July 2024",
          "base EUR\nEUR 1\nUSD,1.0831\nJPY,174.13\ndate 2024-07-05 16:00"}) {
        EXPECT_EQ(Read(csv), "EUR 2024-07-05: USD*1.083 JPY*174.1") << csv;
    }
    EXPECT_EQ(Read("base usd\nUSD 1\nEUR 0.5"), "usd undated: EUR*0.500");
}

TEST(RatesTable, OneBadEntryRefusesTheWholeTable) {
    for (const std::string rate : {"0", "-1", "1e400", "1e-400", "1e-320", "nan", "inf", "1,5", "1.5x", "0x1", "+1"}) {
        const std::string reason = "the rate of \"JPY\" is not a positive number: \"" + rate + "\"";
        EXPECT_EQ(Read("USD 1.5\nJPY " + rate), reason);
        EXPECT_EQ(Read(Cubes("<Cube currency='JPY' rate='" + rate + "'/>")), reason);
    }
    EXPECT_EQ(Read(Cubes("<Cube currency='USD'/>")), "the rate of \"USD\" is not a positive number: \"\"");
    EXPECT_EQ(Read(Cubes("<Cube rate='1'/>")), "a rate has no code");
    EXPECT_EQ(Read(Cubes("<Cube time='soon'/>")), "\"soon\" is not a day; write 2026-09-29");
    EXPECT_EQ(Read("USD 1\nusd 1"), "\"usd\" occurs twice");
    EXPECT_EQ(Read("EUR 2\nUSD 1"), "the rate of its base \"EUR\" is not 1");
    EXPECT_EQ(Read("USD"), "a line has no rate: \"USD\"");
    EXPECT_EQ(Read("Date,USD,JPY\n2024-07-05,1,2\n2024-07-04,1"),
              "the line of \"2024-07-04\" needs one rate for each code");
    EXPECT_EQ(Read("Date,USD,\n2024-07-05,1,2"), "a rate has no code");
    EXPECT_EQ(Read("Date,USD\n2024-13-05,1"), "\"2024-13-05\" is not a day; write 2026-09-29");
    EXPECT_EQ(Read("Date,USD\n2024-07-05,N/A"), "it has no rates");
    EXPECT_EQ(Read("# nothing\n"), "it is empty");
    EXPECT_EQ(Read(std::string_view("U\0S\0D\0", 6)), "it is not UTF-8 text; save it as UTF-8");
    EXPECT_EQ(Read(std::string((16 << 20) + 1, '\n')), "it is too large");
    EXPECT_EQ(Read(std::string(1000, 'x')), "a line has no rate: \"" + std::string(60, 'x') + "...\"");
}

}  // namespace
}  // namespace velm::test
