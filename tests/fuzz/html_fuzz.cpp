#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "htmlview/html_document.h"
#include "htmlview/rtf_writer.h"

// Any bytes are a page: reading it and writing it as RTF neither fails nor leaves a mark without its partner.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string html(data, data + size);
    const velm::HtmlDocument document = velm::ReadHtml(html);
    std::size_t starts = 0;
    std::size_t ends = 0;
    std::size_t anchors = 0;
    const auto count = [&](const velm::HtmlParagraph& paragraph) {
        for (const velm::HtmlRun& run : paragraph.runs) {
            for (const char16_t unit : run.text) {
                starts += unit == velm::LINK_START ? 1 : 0;
                ends += unit == velm::LINK_END ? 1 : 0;
                anchors += unit == velm::ANCHOR ? 1 : 0;
            }
        }
    };
    for (const velm::HtmlBlock& block : document.blocks) {
        count(block.paragraph);
        for (const velm::HtmlParagraph& cell : block.cells) {
            count(cell);
        }
    }
    if (starts != document.links.size() || ends != starts || anchors != document.anchors.size()) {
        std::abort();
    }
    velm::RtfLayout layout;
    layout.shrinkToFit = size % 2 == 0;
    int depth = 0;
    const std::string rtf = velm::WriteRtf(document, layout);
    for (std::size_t i = 0; i < rtf.size(); ++i) {
        if (rtf[i] == '\\' && i + 1 < rtf.size() && (rtf[i + 1] == '{' || rtf[i + 1] == '}' || rtf[i + 1] == '\\')) {
            ++i;
        } else {
            depth += rtf[i] == '{' ? 1 : rtf[i] == '}' ? -1 : 0;
        }
    }
    if (depth != 0) {
        std::abort();
    }
    return 0;
}
