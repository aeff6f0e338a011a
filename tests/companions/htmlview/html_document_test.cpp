#include "htmlview/html_document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <string>

#include "htmlview/rtf_writer.h"
#include "platform/text.h"
#include "support/table.h"

namespace velm {
namespace {

std::string Sketch(const HtmlParagraph& paragraph) {
    const std::map<char16_t, std::string> signs = {
        {LINK_START, "{"}, {LINK_END, "}"}, {ANCHOR, "#"}, {u'\n', "|"}, {u'\u2022', "o"}};
    const auto plain = [&](std::u16string_view text) {
        std::string sketch;
        for (const char16_t unit : text) {
            const auto sign = signs.find(unit);
            sketch += sign != signs.end() ? sign->second : std::string(1, unit < 0x80 ? static_cast<char>(unit) : '~');
        }
        return sketch;
    };
    std::string text = plain(paragraph.bullet) + (paragraph.bullet.empty() ? "" : " ");
    for (const HtmlRun& run : paragraph.runs) {
        const std::string mark = run.style.bold ? "*" : run.style.italic ? "/" : run.style.fixedPitch ? "`" : "";
        text += mark + plain(run.text) + mark;
    }
    return text;
}

std::string Sketch(const HtmlBlock& block) {
    if (block.kind != HtmlBlock::Kind::Paragraph && block.kind != HtmlBlock::Kind::Rule) {
        std::string row;
        for (const HtmlParagraph& cell : block.cells) {
            row += "[" + Sketch(cell) + "]";
        }
        return row + ";";
    }
    return block.kind == HtmlBlock::Kind::Rule ? "-" : "(" + Sketch(block.paragraph) + ")";
}

TEST(HtmlDocument, ReadsPagesAsTheTableTells) {
    for (const auto& row : test::ReadTable(VELMORA_TABLES "/htmlview/pages.txt")) {
        std::u16string page = FromUtf8(row.at(0));
        std::replace(page.begin(), page.end(), u'\u00B6', u'\n');
        std::string sketch;
        for (const HtmlBlock& block : ReadHtml(page).blocks) {
            sketch += Sketch(block);
        }
        EXPECT_EQ(sketch, row.at(1)) << row.at(0);
    }
}

TEST(HtmlDocument, TakesTimeInProportionToThePage) {
    for (const std::u16string_view piece : {u"<", u"<a ", u"<a b='", u"&", u"&#", u"<b>", u"<table>", u"<ul>", u"</",
                                            u"<script>", u"<!--", u"<td>", u"<a href='x'>", u"<a id=q>"}) {
        std::u16string page;
        while (page.size() < 400'000) {
            page += piece;
        }
        const auto start = std::chrono::steady_clock::now();
        const std::string rtf = WriteRtf(ReadHtml(page), {});
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        EXPECT_LT(seconds.count(), 10.0) << std::string(piece.begin(), piece.end());
        EXPECT_EQ(rtf.back(), '}');
    }
}

TEST(RtfWriter, EscapesAndColors) {
    const std::string rtf = WriteRtf(ReadHtml(u"a\\{b} \u03c0 <font color=red>r</font>"), {});
    EXPECT_NE(rtf.find("a\\\\\\{b\\} \\u960?"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find("\\red255\\green0\\blue0;"), std::string::npos) << rtf;
    const std::string styled = WriteRtf(ReadHtml(u"<span style='Background-Color: white; COLOR : #F0a'>r</span>"), {});
    EXPECT_NE(styled.find("\\red255\\green0\\blue170;"), std::string::npos) << styled;
}

}  // namespace
}  // namespace velm
