#pragma once

#include <cstdint>
#include <span>

#include "platform/text.h"

namespace velm {

class FormulaContext;

/// Arguments beyond a function's arity mean nothing. Failure is a NaN, or any other value outside the range that the
/// evaluator accepts.
using FunctionCall = double (*)(FormulaContext& context, double first, double second);

struct FunctionRow {
    CVelmStringView name;
    std::int32_t arity;
    FunctionCall call;
    bool isVolatile = false;  ///< may give another result for the same arguments: it asks the clock or draws a number
};

/// The conditional: any odd number of arguments from three on, and it evaluates only those it needs. It is no
/// row of the table for that reason.
inline constexpr CVelmStringView CONDITIONAL_NAME = u"iif";

/// All functions, sorted by name. Those of arity 0 are written without parentheses.
std::span<const FunctionRow> Functions();

/// Null when there is no function of that name and arity.
const FunctionRow* FindFunction(CVelmStringView name, std::int32_t arity);

}  // namespace velm
