// Formula texts: direct evaluation, the compiled formula and equivalent formulas around the text must agree to the last
// bit.

#include <bit>
#include <cmath>
#include <optional>

#include "formula/formula.h"
#include "formula/parser.h"
#include "fuzz/fuzz.h"
#include "support/fixed_clock.h"

namespace velm::test {
namespace {

using Value = std::optional<double>;

/// The value in a context of its own, so that all draw the same random numbers.
template <typename Evaluate>
Value ValueOf(double x, std::uint8_t angle, const Evaluate& evaluate) {
    const FixedClock clock;
    FormulaContext context(clock);
    context.SetAngle(static_cast<AngleMode>(angle % 3));
    DefineVariable(context, u"a", 0.1);
    if (!std::isnan(x)) {
        context.BindX(x);
    }
    double result = 0.0;
    return evaluate(context, result) ? Value(result) : Value();
}

/// The first byte selects the encoding of the others: UTF-8 or raw 16-bit units.
CVelmString ReadText(Input input) {
    if (input[0] % 2 == 0) {
        return FromUtf8(Characters(input.subspan(1)));
    }
    CVelmString text;
    for (std::size_t i = 1; i + 1 < input.size(); i += 2) {
        text += static_cast<char16_t>(input[i] | input[i + 1] << 8);
    }
    return text;
}

bool IsSame(const Value& a, const Value& b) {
    return a.has_value() == b.has_value() &&
           (!a || std::bit_cast<std::uint64_t>(*a) == std::bit_cast<std::uint64_t>(*b));
}

}  // namespace

void Try(Input input) {
    static constexpr double INPUTS[] = {3.25, -1.0, 0.0, -0.0, 1e200, -1e-310, 2e301, NAN};
    if (input.empty()) {
        return;
    }
    const CVelmString text = ReadText(input);
    const auto valueOfText = [&](const CVelmString& formula) {
        return ValueOf(INPUTS[input[0] >> 5], input[0] >> 1 & 3, [&](FormulaContext& context, double& result) {
            return EvaluateFormula(context, formula, result);
        });
    };
    const Value value = valueOfText(text);
    const CVelmFormula ready(text);
    const Value ofReady =
        ValueOf(INPUTS[input[0] >> 5], input[0] >> 1 & 3,
                [&](FormulaContext& context, double& result) { return ready.Evaluate(context, result); });
    Require(IsSame(value, ofReady), "a formula made ready gives what its text gives");

    const FormulaTokenList list = ParseFormula(ToLowerAscii(text));
    Require(ready.Parses() == (!list.IsEmpty() && !list.HasError()), "a formula parses when its list has no error");
    Require(ready.Parses() || !value, "what does not parse has no value");
    if (ready.Parses()) {
        for (const auto& [before, after] : {std::pair(u"(", u")"),
                                            {u"iif(1,", u",err)"},
                                            {u"iif(0,err,", u")"},
                                            {u"iif(0,1,1,", u",2)"},
                                            {u"neg(neg(", u"))"}}) {
            Require(IsSame(value, valueOfText(before + text + after)), "what means the same has the same value");
        }
    }
}

}  // namespace velm::test
