#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// How a stretch of text looks.
struct HtmlStyle {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool fixedPitch = false;
    int script = 0;           ///< -1 subscript, 1 superscript
    int heading = 0;          ///< 1 to 6, 0 for body text
    std::int32_t color = -1;  ///< 0xRRGGBB, -1 for the system's text color
    int link = -1;            ///< index into HtmlDocument::links

    bool operator==(const HtmlStyle&) const = default;
};

struct HtmlRun {
    std::u16string text;
    HtmlStyle style;
};

/// A paragraph, a list entry, a table cell's content or, without runs, an empty line.
struct HtmlParagraph {
    std::vector<HtmlRun> runs;
    std::u16string bullet;  ///< "•" or "3.", empty outside lists
    int indent = 0;         ///< steps of list or quotation
    int heading = 0;        ///< 1 to 6, 0 for body text
    bool spaceBefore = false;
    bool centered = false;
};

struct HtmlBlock {
    enum class Kind { Paragraph, Rule, TableRow };

    Kind kind = Kind::Paragraph;
    HtmlParagraph paragraph;           ///< of a Paragraph
    std::vector<HtmlParagraph> cells;  ///< of a TableRow, left to right
    int table = 0;                     ///< of a TableRow: rows of one table share the number
};

/// The content of a page, flat and in reading order.
struct HtmlDocument {
    std::vector<HtmlBlock> blocks;
    std::vector<std::u16string> links;    ///< targets, in order of appearance; "#name" leads within the page
    std::vector<std::u16string> anchors;  ///< names, in order of appearance
};

/// In a document's text each link stands between LINK_START and LINK_END and each anchor is an ANCHOR, in the order of
/// the lists above, so that whoever shows the text finds their places. The page itself cannot hold these characters.
constexpr char16_t LINK_START = 0xE000;
constexpr char16_t LINK_END = 0xE001;
constexpr char16_t ANCHOR = 0xE002;

/// Parses HTML. Skips unknown tags and tolerates broken nesting; never fails.
HtmlDocument ReadHtml(std::u16string_view html);

}  // namespace velm
