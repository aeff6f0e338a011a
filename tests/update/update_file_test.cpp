#include "update/update_file.h"

#include <gtest/gtest.h>

#include "model/file_stream.h"
#include "support/fixed_clock.h"
#include "support/memory_files.h"

namespace velm::test {
namespace {

/// "list URL URL", "update NAME" or "neither".
std::string Read(std::string_view bytes, std::size_t mostUrls = 100) {
    MemoryFiles memory;
    const FixedClock clock;
    memory.Add(u"page", Bytes(bytes.begin(), bytes.end()));
    CVelmFileStream stream(memory, clock);
    EXPECT_TRUE(stream.OpenRead(u"page"));
    const CVelmUpdatePage page = ReadUpdatePage(stream, mostUrls);
    std::string text = page.kind == UpdatePageKind::List ? "list" : "neither";
    for (const CVelmString& url : page.urls) {
        text += " " + ToUtf8(url);
    }
    return page.kind == UpdatePageKind::Update ? "update " + ToUtf8(page.fileName) : text;
}

TEST(UpdatePage, IsAListOrAnUpdateByItsFirstFilledLine) {
    for (const std::string end : {"\r\n", "\n", "\r", "\n\n\r\n"}) {
        const std::string list =
            "VLMLST 1" + end + "http://a/1.txt" + end + "# comment" + end + "HTTP://B/2" + end + "https://c" + end;
        EXPECT_EQ(Read(list), "list http://a/1.txt HTTP://B/2") << testing::PrintToString(end);
        EXPECT_EQ(Read(list + "http://last"), "list http://a/1.txt HTTP://B/2 http://last");
    }
    const std::pair<const char*, const char*> pages[] = {
        {"\r\nVLMLST\nhttp://a", "list http://a"},
        {"VLMUPD\r\n--comment\r\n--FILE name:  \tCurrency\r\n--File Name:Other\r\n", "update Currency"},
        {"VLMUPD\n--File Name:", "update "},
        {"VLMUPD\nUSD\tEUR\t0.9\n", "update "},
        {"VLMUPD\n--File Name:M\xFCnzen", "update M\u00FCnzen"},  // each byte is one character
        {"", "neither"},
        {"\n\n", "neither"},
        {"<html>\nhttp://a", "neither"},
        {"vlmlst\nhttp://a", "neither"},
        {"VLMLS", "neither"},
        {" VLMUPD\n--File Name:x", "neither"},
    };
    for (const auto& [page, text] : pages) {
        EXPECT_EQ(Read(page), text) << page;
    }
    EXPECT_EQ(Read("VLMLST\nhttp://a\nhttp://b\nhttp://c", 2), "list http://a http://b");
}

TEST(UpdateRateLine, HasThreeFilledFields) {
    const auto rate = SplitRateLine(u"USD\tEUR\t1/1.0876\trest");
    ASSERT_TRUE(rate);
    EXPECT_EQ(rate->unit1, u"USD");
    EXPECT_EQ(rate->unit2, u"EUR");
    EXPECT_EQ(rate->factor, u"1/1.0876\trest") << "the last field is the rest of the line";
    for (const char16_t* line : {u"", u"USD", u"USD\tEUR", u"USD\tEUR\t", u"\tEUR\t1", u"USD\t\t1", u"--USD\tEUR\t1"}) {
        EXPECT_FALSE(SplitRateLine(line)) << ToUtf8(line);
    }
}

TEST(UpdateFileName, OfTheNetworkMayNotLeaveTheFolderAndIsShort) {
    EXPECT_TRUE(IsUsableFileName(u"a.b"));
    EXPECT_TRUE(IsUsableFileName(CVelmString(120, u'n')));
    for (const CVelmString& name : {CVelmString(u"..\\..\\x"), CVelmString(u"../x"), CVelmString(u"a..b"),
                                    CVelmString(u"con"), CVelmString(121, u'n')}) {
        EXPECT_FALSE(IsUsableFileName(name)) << ToUtf8(name);
    }
}

}  // namespace
}  // namespace velm::test
