#include "update/update_file.h"

#include <algorithm>

#include "model/file_names.h"
#include "model/file_stream.h"
#include "platform/fetch.h"

namespace velm {
namespace {

/// With the extension's four characters and two bytes per character, the longest file name on any system.
constexpr std::size_t MAX_NAME_LENGTH = 120;

CVelmString NameAfterPrefix(CVelmStringView line) {
    line.remove_prefix(FILE_NAME_LINE.size());
    line.remove_prefix(std::min(line.find_first_not_of(u" \t"), line.size()));
    return CVelmString(line);
}

}  // namespace

bool ReadFilledLine(CVelmFileStream& stream, CVelmString& line) {
    for (;;) {
        const std::int32_t count = stream.ReadLine(line);
        const bool hasEnd = static_cast<std::size_t>(std::max(count, 0)) > line.size();
        // A line without an end before the end of the file was cut off by a read error.
        if (count <= 0 || (!hasEnd && stream.Remaining() > 0)) {
            return false;
        }
        if (!line.empty()) {
            return true;
        }
    }
}

CVelmUpdatePage ReadUpdatePage(CVelmFileStream& stream, std::size_t maxUrls) {
    CVelmUpdatePage page;
    CVelmString line;
    if (!ReadFilledLine(stream, line)) {
        return page;
    }
    if (line.starts_with(UPDATE_MAGIC)) {
        page.kind = UpdatePageKind::Update;
        while (ReadFilledLine(stream, line)) {
            if (StartsWithNoCase(line, FILE_NAME_LINE)) {
                page.fileName = NameAfterPrefix(line);
                break;
            }
        }
    } else if (line.starts_with(LIST_MAGIC)) {
        page.kind = UpdatePageKind::List;
        while (page.urls.size() < maxUrls && ReadFilledLine(stream, line)) {
            if (StartsWithNoCase(line, HTTP_SCHEME)) {
                page.urls.push_back(line);
            }
        }
    }
    return page;
}

std::optional<CVelmRateLine> SplitRateLine(CVelmStringView line) {
    if (line.starts_with(COMMENT_LINE)) {
        return std::nullopt;
    }
    const std::size_t first = line.find(u'\t');
    const std::size_t second = first == CVelmStringView::npos ? first : line.find(u'\t', first + 1);
    if (second == CVelmStringView::npos) {
        return std::nullopt;
    }
    const CVelmRateLine rate{line.substr(0, first), line.substr(first + 1, second - first - 1),
                             line.substr(second + 1)};
    if (rate.unit1.empty() || rate.unit2.empty() || rate.factor.empty()) {
        return std::nullopt;
    }
    return rate;
}

bool IsUsableFileName(CVelmStringView name) {
    return name.size() <= MAX_NAME_LENGTH && name.find(u"..") == CVelmStringView::npos && IsFileNameAllowed(name);
}

}  // namespace velm
