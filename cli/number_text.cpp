#include "number_text.h"

#include <array>
#include <charconv>

#include "formats/format_table.h"

namespace velm {

std::string RawText(double value) {
    std::array<char, 64> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17);
    return {text.data(), end.ptr};
}

FormulaFault ValueFault(const CVelmValueFormat& format, CVelmString text, FormulaContext& formulas) {
    if (const CVelmString group = format.UnreadableDate(text, formulas.Clock()); !group.empty()) {
        return {group + u" is not a date; write {2026-11-22}, {11/22/2026} or {today}", text.find(group), group.size()};
    }
    const CVelmString typed = text;
    if (!format.ToFormula(text, formulas.Clock())) {
        return {u"A group in [] or {} is out of range", NO_PLACE, 0};
    }
    FormulaFault fault = ExplainFailure(formulas, text);
    if (text != typed) {
        fault.position = NO_PLACE;  // groups have become numbers
    }
    return fault;
}

std::string TypedFault(const CVelmValueFormat& format, std::string_view text, FormulaContext& formulas) {
    const CVelmString typed = FromUtf8(text);
    CVelmString formula = typed;
    CompleteTyped(formula, format.TypedFormat());
    const std::string fault = ToUtf8(ValueFault(format, formula, formulas).message);
    return formula == typed ? fault : "Read as " + ToUtf8(formula) + ": " + fault;
}

}  // namespace velm
