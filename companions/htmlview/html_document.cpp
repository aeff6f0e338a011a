#include "htmlview/html_document.h"

#include <algorithm>
#include <string>
#include <utility>

#include "htmlview/html_colors.h"
#include "htmlview/html_tags.h"
#include "htmlview/html_tokenizer.h"

namespace velm {

namespace {

constexpr int MAX_INDENT = 8;
constexpr std::size_t MAX_NESTING = 64;
constexpr std::size_t MAX_CELLS = 32;

class DocumentBuilder {
public:
    HtmlDocument Build(std::u16string_view html);

private:
    struct List {
        bool numbered = false;
        int next = 1;
    };

    /// A tag that holds as long as it is open, within others of its kind too.
    enum class Breaks { Nothing, Paragraph, ParagraphWithSpace };
    struct Nesting {
        HtmlTag tag;
        int DocumentBuilder::*depth;
        Breaks breaks;  ///< where it opens and where it closes
    };
    static const Nesting* FindNesting(HtmlTag tag);
    void BreakFor(const Nesting& nesting);

    void Open(HtmlTag tag, const HtmlToken& token);
    void Close(HtmlTag tag);
    void OpenList(bool numbered);
    void OpenLink(const HtmlToken& token);
    void OpenCell(bool header);
    void CloseRow();
    void CloseLink();
    void CloseTable();
    void AddAnchor(std::u16string_view name);
    void AddText(std::u16string_view text);
    void AddPreformatted(std::u16string_view text);
    void AddSpaceDue();
    std::u16string& RunText();
    void Append(std::u16string_view text);
    void BreakParagraph(bool space);
    void BreakLine();
    HtmlStyle Style() const;
    HtmlParagraph& Current();

    HtmlDocument document_;
    HtmlParagraph paragraph_;
    HtmlBlock row_;
    std::vector<List> lists_;
    std::vector<std::int32_t> colors_;
    int bold_ = 0;
    int italic_ = 0;
    int underline_ = 0;
    int fixed_ = 0;
    int preformatted_ = 0;
    int hidden_ = 0;
    int quoted_ = 0;
    int centered_ = 0;
    int script_ = 0;
    int heading_ = 0;
    int tables_ = 0;
    int tableDepth_ = 0;
    int link_ = -1;
    std::size_t anchorsDue_ = 0;  ///< anchors read and not yet put before a text
    bool inCell_ = false;
    bool headerCell_ = false;
    bool spaceDue_ = false;
    bool spaceBefore_ = false;
};

HtmlDocument DocumentBuilder::Build(std::u16string_view html) {
    HtmlTokenizer tokenizer(html);
    for (HtmlToken token = tokenizer.Next(); token.kind != HtmlToken::Kind::End; token = tokenizer.Next()) {
        switch (token.kind) {
            case HtmlToken::Kind::Text:
                if (hidden_ == 0) {
                    AddText(token.text);
                }
                break;
            case HtmlToken::Kind::Open:
                AddAnchor(token.Attribute(u"id"));
                Open(FindTag(token.name), token);
                break;
            case HtmlToken::Kind::Close:
                Close(FindTag(token.name));
                break;
            case HtmlToken::Kind::End:
                break;
        }
    }
    CloseLink();
    tableDepth_ = std::min(tableDepth_, 1);
    CloseTable();
    if (anchorsDue_ > 0) {
        RunText();
    }
    BreakParagraph(false);
    return std::move(document_);
}

HtmlStyle DocumentBuilder::Style() const {
    HtmlStyle style;
    style.bold = bold_ > 0 || heading_ > 0 || headerCell_;
    style.italic = italic_ > 0;
    style.underline = underline_ > 0;
    style.fixedPitch = fixed_ > 0 || preformatted_ > 0;
    style.script = script_;
    style.heading = heading_;
    style.color = colors_.empty() ? -1 : colors_.back();
    style.link = link_;
    return style;
}

HtmlParagraph& DocumentBuilder::Current() {
    return inCell_ ? row_.cells.back() : paragraph_;
}

std::u16string& DocumentBuilder::RunText() {
    HtmlParagraph& paragraph = Current();
    if (paragraph.runs.empty()) {
        const int lists = static_cast<int>(std::min<std::size_t>(lists_.size(), MAX_INDENT));
        paragraph.indent = std::min(std::max(paragraph.indent, lists + quoted_), MAX_INDENT);
        paragraph.heading = heading_;
        paragraph.centered = centered_ > 0;
        paragraph.spaceBefore = std::exchange(spaceBefore_, false);
    }
    const HtmlStyle style = Style();
    if (paragraph.runs.empty() || paragraph.runs.back().style != style) {
        paragraph.runs.push_back({{}, style});
    }
    std::u16string& text = paragraph.runs.back().text;
    text.append(std::exchange(anchorsDue_, 0), ANCHOR);
    return text;
}

void DocumentBuilder::Append(std::u16string_view text) {
    std::u16string& end = RunText();
    for (const char16_t unit : text) {
        end += unit >= LINK_START && unit <= ANCHOR ? u'\xFFFD' : unit;
    }
}

void DocumentBuilder::AddSpaceDue() {
    std::vector<HtmlRun>& runs = Current().runs;
    if (!std::exchange(spaceDue_, false) || runs.empty() || runs.back().text.ends_with(u'\n')) {
        return;
    }
    // No link or underline begins or ends with a blank.
    HtmlStyle style = runs.back().style;
    style.underline = false;
    style.link = -1;
    if (runs.back().style != style) {
        runs.push_back({{}, style});
    }
    runs.back().text += u' ';
}

void DocumentBuilder::AddText(std::u16string_view text) {
    if (tableDepth_ > 0 && !inCell_) {
        return;
    }
    if (preformatted_ > 0) {
        AddPreformatted(text);
        return;
    }
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t word = std::min(text.find_first_not_of(HTML_BLANKS, at), text.size());
        spaceDue_ = spaceDue_ || word > at;
        if (word == text.size()) {
            return;
        }
        at = std::min(text.find_first_of(HTML_BLANKS, word), text.size());
        AddSpaceDue();
        Append(text.substr(word, at - word));
    }
}

void DocumentBuilder::AddPreformatted(std::u16string_view text) {
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(u'\n', at), text.size());
        std::u16string_view line = text.substr(at, end - at);
        if (!line.empty() && line.back() == u'\r') {
            line.remove_suffix(1);
        }
        if (!line.empty()) {
            Append(line);
        }
        if (end < text.size()) {
            BreakLine();
        }
        at = end + 1;
    }
}

void DocumentBuilder::BreakLine() {
    spaceDue_ = false;
    Append(u"\n");
}

void DocumentBuilder::BreakParagraph(bool space) {
    spaceDue_ = false;
    if (inCell_) {
        // Paragraphs of a cell become its lines.
        HtmlParagraph& cell = row_.cells.back();
        if (!cell.runs.empty() && !cell.runs.back().text.ends_with(u'\n')) {
            BreakLine();
        }
        return;
    }
    spaceBefore_ = spaceBefore_ || space;
    if (paragraph_.runs.empty() && paragraph_.bullet.empty()) {
        return;
    }
    HtmlBlock block;
    block.paragraph = std::move(paragraph_);
    document_.blocks.push_back(std::move(block));
    paragraph_ = {};
}

void DocumentBuilder::AddAnchor(std::u16string_view name) {
    if (name.empty()) {
        return;
    }
    document_.anchors.emplace_back(name);
    ++anchorsDue_;
}

void DocumentBuilder::OpenLink(const HtmlToken& token) {
    CloseLink();
    AddAnchor(token.Attribute(u"name"));
    const std::u16string_view target = token.Attribute(u"href");
    if (target.empty() || (tableDepth_ > 0 && !inCell_)) {
        return;
    }
    AddSpaceDue();
    link_ = static_cast<int>(document_.links.size());
    document_.links.emplace_back(target);
    RunText() += LINK_START;
}

void DocumentBuilder::CloseLink() {
    if (link_ < 0) {
        return;
    }
    RunText() += LINK_END;
    link_ = -1;
}

void DocumentBuilder::OpenList(bool numbered) {
    BreakParagraph(lists_.empty());
    if (lists_.size() < MAX_NESTING) {
        lists_.push_back({numbered, 1});
    }
}

void DocumentBuilder::OpenCell(bool header) {
    if (tableDepth_ != 1) {
        return;
    }
    CloseLink();
    spaceDue_ = false;
    headerCell_ = header;
    if (row_.cells.size() < MAX_CELLS) {
        row_.cells.emplace_back();
    } else if (inCell_) {
        BreakParagraph(false);
    }
    inCell_ = true;
}

void DocumentBuilder::CloseRow() {
    if (tableDepth_ != 1) {
        return;
    }
    CloseLink();
    inCell_ = false;
    headerCell_ = false;
    spaceDue_ = false;
    if (!row_.cells.empty()) {
        for (HtmlParagraph& cell : row_.cells) {
            if (!cell.runs.empty() && cell.runs.back().text.ends_with(u'\n')) {
                cell.runs.back().text.pop_back();
            }
        }
        row_.kind = HtmlBlock::Kind::TableRow;
        row_.table = tables_;
        document_.blocks.push_back(std::move(row_));
    }
    row_ = {};
}

void DocumentBuilder::CloseTable() {
    if (tableDepth_ == 0) {
        return;
    }
    CloseRow();
    --tableDepth_;
    spaceBefore_ = spaceBefore_ || tableDepth_ == 0;
}

const DocumentBuilder::Nesting* DocumentBuilder::FindNesting(HtmlTag tag) {
    static constexpr Nesting NESTINGS[] = {
        {HtmlTag::Bold, &DocumentBuilder::bold_, Breaks::Nothing},
        {HtmlTag::Italic, &DocumentBuilder::italic_, Breaks::Nothing},
        {HtmlTag::Underline, &DocumentBuilder::underline_, Breaks::Nothing},
        {HtmlTag::Fixed, &DocumentBuilder::fixed_, Breaks::Nothing},
        {HtmlTag::Hidden, &DocumentBuilder::hidden_, Breaks::Nothing},
        {HtmlTag::Quote, &DocumentBuilder::quoted_, Breaks::ParagraphWithSpace},
        {HtmlTag::Center, &DocumentBuilder::centered_, Breaks::Paragraph},
        {HtmlTag::Preformatted, &DocumentBuilder::preformatted_, Breaks::ParagraphWithSpace},
    };
    const auto* const found = std::ranges::find(NESTINGS, tag, &Nesting::tag);
    return found != std::end(NESTINGS) ? found : nullptr;
}

void DocumentBuilder::BreakFor(const Nesting& nesting) {
    if (nesting.breaks != Breaks::Nothing) {
        BreakParagraph(nesting.breaks == Breaks::ParagraphWithSpace);
    }
}

void DocumentBuilder::Open(HtmlTag tag, const HtmlToken& token) {
    if (const Nesting* const nesting = FindNesting(tag)) {
        BreakFor(*nesting);
        ++(this->*nesting->depth);
        return;
    }
    switch (tag) {
        case HtmlTag::Link:
            OpenLink(token);
            break;
        case HtmlTag::Subscript:
            script_ = -1;
            break;
        case HtmlTag::Superscript:
            script_ = 1;
            break;
        case HtmlTag::Font:
            if (colors_.size() < MAX_NESTING) {
                const std::int32_t color = ColorOf(token);
                colors_.push_back(color >= 0 ? color : (colors_.empty() ? -1 : colors_.back()));
            }
            break;
        case HtmlTag::Break:
            BreakLine();
            break;
        case HtmlTag::Section:
            BreakParagraph(false);
            break;
        case HtmlTag::Paragraph:
            BreakParagraph(true);
            break;
        case HtmlTag::Definition:
            BreakParagraph(false);
            Current().indent = 1;
            break;
        case HtmlTag::Heading:
            BreakParagraph(true);
            heading_ = token.name.back() - u'0';
            break;
        case HtmlTag::Rule:
            BreakParagraph(false);
            if (tableDepth_ == 0) {
                document_.blocks.emplace_back().kind = HtmlBlock::Kind::Rule;
            }
            break;
        case HtmlTag::OrderedList:
            OpenList(true);
            break;
        case HtmlTag::List:
            OpenList(false);
            break;
        case HtmlTag::Entry: {
            BreakParagraph(false);
            const bool numbered = !lists_.empty() && lists_.back().numbered;
            const std::string number = numbered ? std::to_string(lists_.back().next++) + "." : std::string();
            Current().bullet = numbered ? std::u16string(number.begin(), number.end()) : std::u16string(u"\u2022");
            break;
        }
        case HtmlTag::Table:
            if (tableDepth_ == 0) {
                BreakParagraph(true);
                ++tables_;
            }
            ++tableDepth_;
            break;
        case HtmlTag::Row:
            CloseRow();
            break;
        case HtmlTag::Cell:
        case HtmlTag::HeaderCell:
            OpenCell(tag == HtmlTag::HeaderCell);
            break;
        default:
            break;
    }
}

void DocumentBuilder::Close(HtmlTag tag) {
    if (const Nesting* const nesting = FindNesting(tag)) {
        BreakFor(*nesting);
        this->*nesting->depth = std::max(this->*nesting->depth - 1, 0);
        return;
    }
    switch (tag) {
        case HtmlTag::Link:
            CloseLink();
            break;
        case HtmlTag::Subscript:
        case HtmlTag::Superscript:
            script_ = 0;
            break;
        case HtmlTag::Font:
            if (!colors_.empty()) {
                colors_.pop_back();
            }
            break;
        case HtmlTag::Heading:
        case HtmlTag::Paragraph:
            BreakParagraph(true);
            heading_ = 0;
            break;
        case HtmlTag::OrderedList:
        case HtmlTag::List:
            BreakParagraph(lists_.size() <= 1);
            if (!lists_.empty()) {
                lists_.pop_back();
            }
            break;
        case HtmlTag::Section:
        case HtmlTag::Entry:
        case HtmlTag::Definition:
            BreakParagraph(false);
            break;
        case HtmlTag::Table:
            CloseTable();
            break;
        case HtmlTag::Row:
            CloseRow();
            break;
        default:
            break;
    }
}

}  // namespace

HtmlDocument ReadHtml(std::u16string_view html) {
    return DocumentBuilder().Build(html);
}

}  // namespace velm
