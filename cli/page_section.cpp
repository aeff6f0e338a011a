#include "page_section.h"

#include <algorithm>

#include "htmlview/html_document.h"
#include "model/reference_list.h"

namespace velm {

namespace {

CVelmString TextOf(const HtmlParagraph& paragraph) {
    CVelmString text;
    for (const HtmlRun& run : paragraph.runs) {
        std::copy_if(run.text.begin(), run.text.end(), std::back_inserter(text),
                     [](char16_t unit) { return unit < LINK_START || unit > ANCHOR; });
    }
    return text;
}

std::size_t AnchorsIn(const HtmlParagraph& paragraph) {
    std::ptrdiff_t count = 0;
    for (const HtmlRun& run : paragraph.runs) {
        count += std::count(run.text.begin(), run.text.end(), ANCHOR);
    }
    return static_cast<std::size_t>(count);
}

/// The block with the anchor; past the end when there is none.
std::size_t FindAnchor(const HtmlDocument& page, const CVelmString& name) {
    std::size_t anchor = 0;
    for (std::size_t block = 0; block < page.blocks.size(); ++block) {
        for (std::size_t end = anchor + AnchorsIn(page.blocks[block].paragraph); anchor < end; ++anchor) {
            if (EqualsNoCase(page.anchors[anchor], name)) {
                return block;
            }
        }
        for (const HtmlParagraph& cell : page.blocks[block].cells) {
            anchor += AnchorsIn(cell);
        }
    }
    return page.blocks.size();
}

/// The lines behind the first of a paragraph are indented.
void AddLines(const CVelmString& text, std::vector<std::string>& lines) {
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(u'\n', at), text.size());
        lines.push_back((at == 0 ? "" : "  ") + ToUtf8(text.substr(at, end - at)));
        at = end + 1;
    }
}

void AddSection(const HtmlDocument& page, const CVelmString& name, std::vector<std::string>& lines) {
    const std::size_t start = FindAnchor(page, name);
    for (std::size_t block = start; block < page.blocks.size(); ++block) {
        const HtmlBlock& content = page.blocks[block];
        if (block > start && content.paragraph.heading > 0) {
            return;
        }
        if (!lines.empty() && content.paragraph.spaceBefore) {
            lines.emplace_back();
        }
        AddLines(TextOf(content.paragraph), lines);
    }
}

}  // namespace

std::vector<std::string> ReadSection(const CVelmServices& services, const CVelmString& folder,
                                     const CVelmString& fileName) {
    CVelmReferenceList references(services);
    references.ScanReferences(folder);
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < references.names.size(); ++i) {
        CVelmString text;
        if (references.ReadReference(i, text)) {
            AddSection(ReadHtml(text), fileName, lines);
        }
    }
    return lines;
}

}  // namespace velm
