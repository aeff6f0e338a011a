#include "htmlview/rtf_writer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>

namespace velm {

namespace {

// Sizes in tenths of body text: its own, then those of the headings 1 to 6.
constexpr std::array HEADING_TENTHS = {10, 16, 14, 12, 11, 10, 10};
constexpr int INDENT_TWIPS = 240;
constexpr int SPACE_TWIPS = 100;
constexpr int CELL_GAP_TWIPS = 60;
constexpr int CHARACTER_TWIPS = 115;  // width of an ordinary character of body text
constexpr int UNDERSCORE_TWIPS = 110;
constexpr std::int32_t LINK_COLOR = 0x0050B0;

class RtfBuilder {
public:
    explicit RtfBuilder(const RtfLayout& layout) : layout_(layout) {}

    std::string Build(const HtmlDocument& document);

private:
    void CollectColors(const HtmlDocument& document);
    void CollectColors(const HtmlParagraph& paragraph);
    void AddColor(std::int32_t color);
    std::int32_t ColorOf(const HtmlStyle& style) const { return style.link >= 0 ? LINK_COLOR : style.color; }
    void WriteHeader();
    void WriteParagraph(const HtmlParagraph& paragraph);
    void WriteRule();
    void WriteRow(const HtmlBlock& row, const std::vector<int>& rightEdges, bool last);
    void WriteRun(const HtmlRun& run);
    void WriteText(std::u16string_view text);
    void Write(std::string_view text) { rtf_ += text; }
    void Control(std::string_view word, int value) {
        rtf_ += word;
        rtf_ += std::to_string(value);
    }
    std::vector<int> ColumnEdges(const HtmlDocument& document, std::size_t first) const;

    RtfLayout layout_;
    std::map<std::int32_t, int> colors_;
    std::string rtf_;
};

std::string RtfBuilder::Build(const HtmlDocument& document) {
    CollectColors(document);
    WriteHeader();
    std::vector<int> edges;
    for (std::size_t i = 0; i < document.blocks.size(); ++i) {
        const HtmlBlock& block = document.blocks[i];
        const auto isOfTable = [&](std::size_t other) {
            return other < document.blocks.size() && document.blocks[other].kind == HtmlBlock::Kind::TableRow &&
                   document.blocks[other].table == block.table;
        };
        switch (block.kind) {
            case HtmlBlock::Kind::Paragraph:
                WriteParagraph(block.paragraph);
                break;
            case HtmlBlock::Kind::Rule:
                WriteRule();
                break;
            case HtmlBlock::Kind::TableRow:
                if (i == 0 || !isOfTable(i - 1)) {
                    edges = ColumnEdges(document, i);
                }
                WriteRow(block, edges, !isOfTable(i + 1));
                break;
        }
    }
    Write("}");
    return std::move(rtf_);
}

void RtfBuilder::AddColor(std::int32_t color) {
    if (color >= 0) {
        colors_.try_emplace(color, static_cast<int>(colors_.size()) + 1);
    }
}

void RtfBuilder::CollectColors(const HtmlParagraph& paragraph) {
    for (const HtmlRun& run : paragraph.runs) {
        AddColor(ColorOf(run.style));
    }
}

void RtfBuilder::CollectColors(const HtmlDocument& document) {
    for (const HtmlBlock& block : document.blocks) {
        CollectColors(block.paragraph);
        for (const HtmlParagraph& cell : block.cells) {
            CollectColors(cell);
        }
    }
}

void RtfBuilder::WriteHeader() {
    Write("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}{\\f1\\fmodern Courier New;}}{\\colortbl ;");
    std::vector<std::int32_t> table(colors_.size());
    for (const auto& [color, index] : colors_) {
        table[static_cast<std::size_t>(index) - 1] = color;
    }
    for (const std::int32_t color : table) {
        Control("\\red", color >> 16);
        Control("\\green", (color >> 8) & 0xFF);
        Control("\\blue", color & 0xFF);
        Write(";");
    }
    Write("}\\uc1 ");
}

void RtfBuilder::WriteText(std::u16string_view text) {
    for (const char16_t unit : text) {
        if (unit == u'\n') {
            Write("\\line ");
        } else if (unit == u'\t') {
            Write("\\tab ");
        } else if (unit == u'\\' || unit == u'{' || unit == u'}') {
            rtf_ += '\\';
            rtf_ += static_cast<char>(unit);
        } else if (unit >= 0x20 && unit < 0x7F) {
            rtf_ += static_cast<char>(unit);
        } else if (unit >= 0x80) {
            Control("\\u", static_cast<std::int16_t>(unit));
            rtf_ += '?';
        }
    }
}

void RtfBuilder::WriteRun(const HtmlRun& run) {
    const HtmlStyle& style = run.style;
    const int size = layout_.fontHalfPoints * HEADING_TENTHS[static_cast<std::size_t>(style.heading)] / 10;
    Control("{\\plain\\f", style.fixedPitch ? 1 : 0);
    Control("\\fs", size);
    Control("\\b", style.bold ? 1 : 0);
    Control("\\i", style.italic ? 1 : 0);
    Write(style.underline || style.link >= 0 ? "\\ul" : "");
    Write(style.script > 0 ? "\\super" : style.script < 0 ? "\\sub" : "");
    if (ColorOf(style) >= 0) {
        Control("\\cf", colors_.at(ColorOf(style)));
    }
    Write(" ");
    WriteText(run.text);
    Write("}");
}

void RtfBuilder::WriteParagraph(const HtmlParagraph& paragraph) {
    const int indent = paragraph.indent * INDENT_TWIPS;
    Write("\\pard");
    Write(paragraph.centered ? "\\qc" : "");
    Control("\\sb", paragraph.spaceBefore ? SPACE_TWIPS * (paragraph.heading > 0 ? 2 : 1) : 0);
    Control("\\li", indent);
    if (!paragraph.bullet.empty()) {
        Control("\\fi", -INDENT_TWIPS);
        Control("\\tx", indent);
    }
    Control("\\plain\\f0\\fs", layout_.fontHalfPoints);
    Write(" ");
    if (!paragraph.bullet.empty()) {
        WriteText(paragraph.bullet);
        Write("\\tab ");
    }
    for (const HtmlRun& run : paragraph.runs) {
        WriteRun(run);
    }
    Write("\\par\n");
}

void RtfBuilder::WriteRule() {
    // The rich text control draws no paragraph borders; underscores join into a line in every font.
    Write("\\pard\\plain\\f0\\fs18 ");
    rtf_.append(static_cast<std::size_t>(std::clamp(layout_.widthTwips / UNDERSCORE_TWIPS, 8, 80)), '_');
    Write("\\par\n");
}

std::size_t LongestLine(const HtmlParagraph& cell) {
    std::size_t longest = 0;
    std::size_t length = 0;
    for (const HtmlRun& run : cell.runs) {
        for (const char16_t unit : run.text) {
            length = unit == u'\n' ? 0 : length + 1;
            longest = std::max(longest, length);
        }
    }
    return longest;
}

/// Right edges of the columns of the table whose rows begin at block `first`: each column has its text's share.
std::vector<int> RtfBuilder::ColumnEdges(const HtmlDocument& document, std::size_t first) const {
    std::vector<int> wanted;
    const int table = document.blocks[first].table;
    for (std::size_t i = first; i < document.blocks.size(); ++i) {
        const HtmlBlock& row = document.blocks[i];
        if (row.kind != HtmlBlock::Kind::TableRow || row.table != table) {
            break;
        }
        wanted.resize(std::max(wanted.size(), row.cells.size()));
        for (std::size_t column = 0; column < row.cells.size(); ++column) {
            const int characters = static_cast<int>(std::min<std::size_t>(LongestLine(row.cells[column]), 60));
            wanted[column] = std::max(wanted[column], (characters + 2) * CHARACTER_TWIPS);
        }
    }
    // Narrow columns keep what they want; the wide ones share what is left.
    int room = layout_.widthTwips;
    int sharers = static_cast<int>(wanted.size());
    std::vector<int> width = wanted;
    if (layout_.shrinkToFit) {
        std::vector<std::size_t> order(wanted.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            order[i] = i;
        }
        std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return wanted[a] < wanted[b]; });
        for (const std::size_t column : order) {
            width[column] = std::max(std::min(wanted[column], room / sharers), 2 * CHARACTER_TWIPS);
            room -= width[column];
            --sharers;
        }
    }
    std::vector<int> edges;
    int edge = 0;
    for (const int column : width) {
        edge += column;
        edges.push_back(edge);
    }
    return edges;
}

void RtfBuilder::WriteRow(const HtmlBlock& row, const std::vector<int>& rightEdges, bool last) {
    Control("\\pard\\trowd\\trgaph", CELL_GAP_TWIPS);
    Control("\\trleft", 0);
    for (std::size_t column = 0; column < row.cells.size(); ++column) {
        // The last cell of a short row takes the rest of the table's width.
        const std::size_t edge = column + 1 == row.cells.size() ? rightEdges.size() - 1 : column;
        Control("\\cellx", rightEdges[edge]);
    }
    for (const HtmlParagraph& cell : row.cells) {
        Write("\\pard\\plain\\intbl ");
        for (const HtmlRun& run : cell.runs) {
            WriteRun(run);
        }
        // Wine cuts the foot off a table's last row: what it cuts is an empty line.
        Write(last ? "\\line\\cell" : "\\cell");
    }
    Write("\\row\n");
}

}  // namespace

std::string WriteRtf(const HtmlDocument& document, const RtfLayout& layout) {
    return RtfBuilder(layout).Build(document);
}

}  // namespace velm
