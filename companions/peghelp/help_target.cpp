#include "peghelp/help_target.h"

#include <algorithm>

namespace velm {
namespace {

constexpr CVelmStringView SCHEME = u"file:";
constexpr CVelmStringView EXTENSION = u".htm";

}  // namespace

HelpTarget ParseHelpTarget(CVelmStringView text) {
    text = Trim(text, u" \t\"");
    if (StartsWithNoCase(text, SCHEME)) {
        text.remove_prefix(SCHEME.size());
    }
    HelpTarget target;
    const std::size_t sign = std::min(text.find(u'#'), text.size());
    if (sign < text.size()) {
        target.anchor = text.substr(sign + 1);
    }
    const CVelmStringView page = text.substr(0, sign);
    if (EndsWithNoCase(page, EXTENSION) && page.find_first_of(u"/\\:") == CVelmStringView::npos) {
        target.page = page.substr(0, page.size() - EXTENSION.size());
    }
    return target;
}

}  // namespace velm
