#include "number_text.h"

#include <array>
#include <charconv>

#include "formats/format_table.h"
#include "formula/formula_errors.h"

namespace velm {

std::string RawText(double value) {
    std::array<char, 64> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17);
    return {text.data(), end.ptr};
}

std::string ValueFault(const CVelmValueFormat& format, CVelmString text, FormulaContext& formulas) {
    if (const CVelmString group = format.UnreadableDate(text, formulas.Clock()); !group.empty()) {
        return ToUtf8(group) + " is not a date; write {2026-11-22}, {11/22/2026} or {today}";
    }
    if (!format.ToFormula(text, formulas.Clock())) {
        return "A group in [] or {} is out of range";
    }
    return ToUtf8(ExplainFailure(formulas, text).message);
}

std::string TypedFault(const CVelmValueFormat& format, std::string_view text, FormulaContext& formulas) {
    const CVelmString typed = FromUtf8(text);
    CVelmString formula = typed;
    CompleteTyped(formula, format.TypedFormat());
    const std::string fault = ValueFault(format, formula, formulas);
    return formula == typed ? fault : "Read as " + ToUtf8(formula) + ": " + fault;
}

}  // namespace velm
