#include "formats/value_format.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "datetime/date_parser.h"
#include "formats/decimal_format.h"

namespace velm {
namespace {

/// Shortest group that is replaced, brackets included; "[]" stays as typed.
constexpr std::size_t MIN_GROUP = 3;

/// Replaces each group from `open` to the nearest `close` by its value in parentheses. `valueOf` receives the group
/// with its brackets. Unclosed groups stay. False when a value is not finite.
template <typename ValueOf>
bool ReplaceGroups(CVelmString& text, char16_t open, char16_t close, ValueOf valueOf) {
    const CVelmStringView source = text;
    CVelmString replaced;
    std::size_t copied = 0;
    std::size_t start = source.find(open);
    while (start != CVelmStringView::npos) {
        const std::size_t end = source.find(close, start);
        if (end == CVelmStringView::npos) {
            break;
        }
        const CVelmStringView group = source.substr(start, end - start + 1);
        if (group.size() >= MIN_GROUP) {
            const double value = valueOf(group);
            if (!std::isfinite(value)) {
                return false;
            }
            replaced.append(source, copied, start - copied);
            replaced += u'(' + NumberToText(value) + u')';
            copied = end + 1;
        }
        start = source.find(open, end + 1);
    }
    if (copied != 0) {
        replaced.append(source, copied);
        text = std::move(replaced);
    }
    return true;
}

/// The date in a group in {}; cleared when the group is no date.
DateTime DateOfGroup(CVelmStringView group, const CVelmClock& clock) {
    return ParseDate(group.substr(1, group.size() - 2), clock);
}

bool IsCleared(const DateTime& date) {
    return date.month == 0;
}

std::uint32_t LowestCode(std::uint32_t mask) {
    return mask & (~mask + 1);
}

}  // namespace

CVelmValueFormat::CVelmValueFormat() {
    compoundParts[0].factor = 1.0;
}

CVelmValueFormat& CVelmValueFormat::operator=(const CVelmValueFormat& other) {
    compoundParts = other.compoundParts;
    allowedFormats = other.allowedFormats;
    displayFormat = other.displayFormat;
    inputFormat = other.displayFormat;
    return *this;
}

void CVelmValueFormat::SetAllowedFormats(std::uint32_t mask) {
    allowedFormats = mask == 0 ? FMT_DECIMAL : mask;
    for (std::uint32_t* code : {&displayFormat, &inputFormat}) {
        if ((*code & allowedFormats) == 0) {
            *code = LowestCode(allowedFormats);
        }
    }
}

std::uint32_t CVelmValueFormat::TypedFormat() const {
    const auto hasTab = [this](const FormatKind& format) { return format.HasTab(allowedFormats); };
    if (hasTab(FormatOf(inputFormat))) {
        return FormatOf(inputFormat).code;
    }
    const auto firstTab = std::ranges::find_if(Formats(), hasTab);
    return firstTab == Formats().end() ? FMT_DECIMAL : firstTab->code;
}

CVelmString CVelmValueFormat::FormatValue(double value, const CVelmLocale& locale) const {
    const FormatKind& format = FormatOf(displayFormat);
    return format.show == nullptr ? format.write(value, true) : format.show(*this, value, locale);
}

CVelmString CVelmValueFormat::FormatValueForInput(double value) const {
    return FormatOf(inputFormat).write(value, false);
}

bool CVelmValueFormat::ToFormula(CVelmString& text, const CVelmClock& clock, BadDates badDates) const {
    if ((allowedFormats & FMT_COMPOUND) != 0) {
        const auto compoundValue = [this](CVelmStringView group) { return ParseCompound(compoundParts, group); };
        if (!ReplaceGroups(text, u'[', u']', compoundValue)) {
            return false;
        }
    }
    return ReplaceGroups(text, u'{', u'}', [&](CVelmStringView group) {
        const DateTime date = DateOfGroup(group, clock);
        return IsCleared(date) && badDates == BadDates::Refused ? NAN : date.value;
    });
}

CVelmString CVelmValueFormat::UnreadableDate(CVelmString text, const CVelmClock& clock) const {
    CVelmString unreadable;
    ReplaceGroups(text, u'{', u'}', [&](CVelmStringView group) {
        const DateTime date = DateOfGroup(group, clock);
        if (IsCleared(date) && unreadable.empty()) {
            unreadable = group;
        }
        return date.value;
    });
    return unreadable;
}

bool CVelmValueFormat::ParseValueText(CVelmString text, FormulaContext& context, double& value,
                                      BadDates badDates) const {
    return ToFormula(text, context.Clock(), badDates) && EvaluateFormula(context, text, value);
}

bool CVelmValueFormat::ParseTyped(CVelmString text, std::uint32_t code, FormulaContext& context, double& value,
                                  BadDates badDates) const {
    CompleteTyped(text, code);
    return ParseValueText(std::move(text), context, value, badDates);
}

}  // namespace velm
