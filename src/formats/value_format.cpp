#include "formats/value_format.h"

#include <cmath>
#include <utility>

#include "datetime/date_parser.h"
#include "formats/base_format.h"
#include "formats/currency_format.h"
#include "formats/date_format.h"
#include "formats/decimal_format.h"

namespace velm {
namespace {

/// Shortest group that is replaced, brackets included; "[]" stays as typed.
constexpr std::size_t SHORTEST_GROUP = 3;

/// Puts the value of each group from `open` to the nearest `close` in its place, in parentheses. `valueOf` is given
/// the group with its brackets. Unclosed groups stay. False when a value is not finite.
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
        if (group.size() >= SHORTEST_GROUP) {
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

CVelmString CVelmValueFormat::FormatValue(double value, const CVelmLocale& locale) const {
    switch (displayFormat) {
        case FMT_HEX:
        case FMT_OCTAL:
        case FMT_BINARY:
            return FormatBase(value, displayFormat, true);
        case FMT_COMPOUND:
            return FormatCompound(compoundParts, value);
        case FMT_DATE:
            return FormatDate(value, false, locale);
        case FMT_DATETIME:
            return FormatDate(value, true, locale);
        case FMT_CURRENCY:
            return FormatCurrency(value, true);
        default:
            return FormatDecimal(value, true);
    }
}

CVelmString CVelmValueFormat::FormatValueForInput(double value) const {
    switch (inputFormat) {
        case FMT_HEX:
        case FMT_OCTAL:
        case FMT_BINARY:
            return FormatBase(value, inputFormat, false);
        case FMT_CURRENCY:
            return FormatCurrency(value, false);
        default:
            return FormatDecimal(value, false);
    }
}

bool CVelmValueFormat::ToFormula(CVelmStringView text, const CVelmClock& clock, CVelmString& formula) const {
    formula = text;
    if ((allowedFormats & FMT_COMPOUND) != 0) {
        const auto compoundValue = [this](CVelmStringView group) { return ParseCompound(compoundParts, group); };
        if (!ReplaceGroups(formula, u'[', u']', compoundValue)) {
            return false;
        }
    }
    const auto dateValue = [&clock](CVelmStringView group) {
        return ParseDate(group.substr(1, group.size() - 2), clock).value;
    };
    return ReplaceGroups(formula, u'{', u'}', dateValue);
}

bool CVelmValueFormat::ParseValueText(CVelmStringView text, FormulaContext& context, double& value) const {
    CVelmString formula;
    return ToFormula(text, context.Clock(), formula) && EvaluateFormula(context, formula, value);
}

int CVelmValueFormat::SplitCompound(double value, std::array<CVelmString, COMPOUND_PARTS>& texts) const {
    return velm::SplitCompound(compoundParts, value, texts);
}

}  // namespace velm
