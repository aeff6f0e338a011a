#include "tallyra/tape.h"

#include <algorithm>
#include <string>

#include "model/file_replacement.h"
#include "model/file_stream.h"

namespace velm {
namespace {

// A full tape of the longest lines is smaller than this, whatever its characters.
constexpr std::size_t MAX_FILE_SIZE = CVelmTape::MAX_LINES * CVelmTape::MAX_TEXT_LENGTH * 2 * 3;

/// Tabs and line ends are the file's separators, so texts must not contain any.
CVelmString CleanText(CVelmStringView text) {
    CVelmString clean(text.substr(0, CVelmTape::MAX_TEXT_LENGTH));
    std::replace_if(
        clean.begin(), clean.end(), [](char16_t unit) { return unit < u' '; }, u' ');
    return clean;
}

}  // namespace

void CVelmTape::Add(CVelmStringView expression, CVelmStringView result) {
    lines_.push_back({CleanText(expression), CleanText(result)});
    if (lines_.size() > MAX_LINES) {
        lines_.pop_front();
    }
}

void CVelmTape::Load(const CVelmServices& services, const CVelmString& path) {
    CVelmFileStream stream(services.files, services.clock);
    if (!stream.OpenRead(path)) {
        return;
    }
    std::string bytes(std::min<std::size_t>(stream.GetSize(), MAX_FILE_SIZE), '\0');
    const std::int32_t read = stream.Read(bytes.size(), bytes.data());
    bytes.resize(static_cast<std::size_t>(std::max(read, 0)));
    const CVelmString text = FromUtf8(bytes);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(u'\n', at), text.size());
        const CVelmStringView line = CVelmStringView(text).substr(at, end - at);
        const std::size_t tab = line.find(u'\t');
        if (tab != CVelmStringView::npos) {
            Add(line.substr(0, tab), line.substr(tab + 1));
        }
        at = end + 1;
    }
}

bool CVelmTape::Save(const CVelmServices& services, const CVelmString& path) const {
    std::string bytes;
    for (const TapeLine& line : lines_) {
        bytes += ToUtf8(line.expression) + '\t' + ToUtf8(line.result) + '\n';
    }
    return ReplaceFile(services.files, path, bytes);
}

}  // namespace velm
