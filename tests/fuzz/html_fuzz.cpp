#include <algorithm>
#include <string>

#include "fuzz/fuzz.h"
#include "htmlview/html_document.h"
#include "htmlview/rtf_writer.h"

namespace velm::test {

/// Any bytes are a page: reading it and writing it as RTF must not fail or leave an unpaired mark.
void Try(Input input) {
    const HtmlDocument document = ReadHtml(std::u16string(input.begin(), input.end()));
    std::u16string text;
    const auto collect = [&text](const HtmlParagraph& paragraph) {
        for (const HtmlRun& run : paragraph.runs) {
            text += run.text;
        }
    };
    for (const HtmlBlock& block : document.blocks) {
        collect(block.paragraph);
        for (const HtmlParagraph& cell : block.cells) {
            collect(cell);
        }
    }
    const auto count = [&text](char16_t mark) {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), mark));
    };
    Require(count(LINK_START) == document.links.size(), "every link has a start");
    Require(count(LINK_END) == document.links.size(), "every link has an end");
    Require(count(ANCHOR) == document.anchors.size(), "every anchor has a mark");

    RtfLayout layout;
    layout.shrinkToFit = input.size() % 2 == 0;
    int depth = 0;
    const std::string rtf = WriteRtf(document, layout);
    for (std::size_t i = 0; i < rtf.size(); ++i) {
        if (rtf[i] == '\\' && i + 1 < rtf.size() && (rtf[i + 1] == '{' || rtf[i + 1] == '}' || rtf[i + 1] == '\\')) {
            ++i;
        } else {
            depth += rtf[i] == '{' ? 1 : rtf[i] == '}' ? -1 : 0;
        }
    }
    Require(depth == 0, "braces come in pairs");
}

}  // namespace velm::test
