#include "number_text.h"

#include <array>
#include <charconv>

#include "formula/formula_errors.h"

namespace velm {

std::string RawText(double value) {
    std::array<char, 64> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17);
    return {text.data(), end.ptr};
}

std::string ShortestText(double value) {
    std::array<char, 64> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end.ptr};
}

std::string ValueFault(const CVelmValueFormat& format, CVelmStringView text, FormulaContext& formulas) {
    CVelmString formula;
    if (!format.ToFormula(text, formulas.Clock(), formula)) {
        return "A group in [] or {} is out of range";
    }
    return ToUtf8(ExplainFailure(formulas, formula).message);
}

}  // namespace velm
