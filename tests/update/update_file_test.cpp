#include "update/update_file.h"

#include <gtest/gtest.h>

#include "model/file_stream.h"
#include "support/fixed_clock.h"
#include "support/memory_files.h"

namespace velm::test {
namespace {

/// "list URL URL", "update NAME" or "neither".
std::string Read(std::string_view bytes, std::size_t maxUrls = 100) {
    MemoryFiles memory;
    const FixedClock clock;
    memory.AddText(u"page", bytes);
    CVelmFileStream stream(memory, clock);
    EXPECT_TRUE(stream.OpenRead(u"page"));
    const CVelmUpdatePage page = ReadUpdatePage(stream, maxUrls);
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

}  // namespace
}  // namespace velm::test
