#include "htmlview/html_document.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "htmlview/rtf_writer.h"

namespace velm {
namespace {

/// A page in one line of signs: paragraphs in (), cells in [], rules as -, bold *x*, italic /x/, fixed `x`, link {x}.
std::string Sketch(const HtmlParagraph& paragraph) {
    std::string text(paragraph.bullet.begin(), paragraph.bullet.end());
    if (paragraph.bullet == u"\u2022") {
        text = "o";
    }
    text += text.empty() ? "" : " ";
    for (const HtmlRun& run : paragraph.runs) {
        const std::string mark = run.style.bold ? "*" : run.style.italic ? "/" : run.style.fixedPitch ? "`" : "";
        text += mark;
        for (const char16_t unit : run.text) {
            text += unit == LINK_START ? '{'
                    : unit == LINK_END ? '}'
                    : unit == ANCHOR   ? '#'
                    : unit == u'\n'    ? '|'
                    : unit < 0x80      ? static_cast<char>(unit)
                                       : '~';
        }
        text += mark;
    }
    return text;
}

std::string Sketch(std::u16string_view html) {
    std::string text;
    for (const HtmlBlock& block : ReadHtml(html).blocks) {
        if (block.kind == HtmlBlock::Kind::Paragraph) {
            text += "(" + Sketch(block.paragraph) + ")";
        } else if (block.kind == HtmlBlock::Kind::Rule) {
            text += "-";
        } else {
            for (const HtmlParagraph& cell : block.cells) {
                text += "[" + Sketch(cell) + "]";
            }
            text += ";";
        }
    }
    return text;
}

TEST(HtmlDocument, ReadsWhatReferencePagesUse) {
    EXPECT_EQ(Sketch(u"<html><head><title>Not shown</title></head><body><h1>Head</h1><p>One  \n two</p>three"),
              "(*Head*)(One two)(three)");
    EXPECT_EQ(Sketch(u"a <b>bold</b> and <i>slanted</i> <code>x^2</code>"), "(a *bold *and /slanted /`x^2`)");
    EXPECT_EQ(Sketch(u"<ul><li>a<li>b</ul><ol><li>c</li><li>d</li></ol>"), "(o a)(o b)(1. c)(2. d)");
    EXPECT_EQ(Sketch(u"x<hr>y<br>z"), "(x)-(y|z)");
    EXPECT_EQ(Sketch(u"<pre>a  b\n c</pre>"), "(`a  b| c`)") << "pre keeps blanks and lines";
    EXPECT_EQ(Sketch(u"<table><tr><th>N<th>V</tr><tr><td>pi</td><td>3 <b>1</b></td></tr></table>after"),
              "[*N*][*V*];[pi][3 *1*];(after)");
    EXPECT_EQ(Sketch(u"<a name=top></a><p>go <a href='#top'>up</a>"), "(#go {up})");
    EXPECT_EQ(Sketch(u"5 &lt; 6 &amp; 7 &#65;&#x42; &unknown; &"), "(5 < 6 & 7 AB &unknown; &)");
}

TEST(HtmlDocument, MakesTheBestOfBrokenPages) {
    EXPECT_EQ(Sketch(u"a < b <"), "(a < b <)");
    EXPECT_EQ(Sketch(u"<p>unclosed <b>bold"), "(unclosed *bold*)");
    EXPECT_EQ(Sketch(u"</b></table></ul><blink>x</blink>"), "(x)");
    EXPECT_EQ(Sketch(u"<script>if (a<b) x()</script><!-- <p>no --><style>p{}</style>y"), "(y)");
    EXPECT_EQ(Sketch(u"<a href=\"x>y\">l</a>"), "({l})") << "a > inside quotes does not end the tag";
    EXPECT_EQ(Sketch(u"<table><tr><td>a<table><tr><td>b</table>c</table>d"), "[abc];(d)");
    EXPECT_EQ(Sketch(u"\xE000\xE001\xE002"), "(~~~)") << "a page cannot write the marks of links and anchors";
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

TEST(RtfWriter, EscapesAndColours) {
    const std::string rtf = WriteRtf(ReadHtml(u"a\\{b} \u03c0 <font color=red>r</font>"), {});
    EXPECT_NE(rtf.find("a\\\\\\{b\\} \\u960?"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find("\\red255\\green0\\blue0;"), std::string::npos) << rtf;
    const std::string styled = WriteRtf(ReadHtml(u"<span style='Background-Color: white; COLOR : #F0a'>r</span>"), {});
    EXPECT_NE(styled.find("\\red255\\green0\\blue170;"), std::string::npos) << styled;
}

}  // namespace
}  // namespace velm
