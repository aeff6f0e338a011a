#pragma once

#include <optional>
#include <string>

#include "formula/formula.h"
#include "support/fixed_clock.h"

namespace velm::test {

/// A context with a fixed clock.
struct Evaluator {
    FixedClock clock;
    FormulaContext context{clock};

    std::optional<double> operator()(CVelmStringView text) {
        double result = 0.0;
        return EvaluateFormula(context, text, result) ? std::optional(result) : std::nullopt;
    }
};

inline CVelmString Repeat(CVelmStringView part, std::size_t count) {
    CVelmString text;
    text.reserve(part.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

}  // namespace velm::test
