#pragma once

#include <cstdint>
#include <span>

#include "platform/text.h"

namespace velm {

class FormulaContext;

/// Arguments beyond a function's arity are ignored. Failure is a NaN or any other value that the evaluator rejects.
using FunctionCall = double (*)(FormulaContext& context, double first, double second);

struct FunctionRow {
    CVelmStringView name;
    std::int32_t arity;
    FunctionCall call;
    bool isVolatile = false;  ///< may give another result for the same arguments: it asks the clock or draws a number
};

/// The conditional: an odd number of arguments, at least three, evaluated only as needed; therefore not in the table.
inline constexpr CVelmStringView CONDITIONAL_NAME = u"iif";

/// All functions, sorted by name. Those of arity 0 are written without parentheses.
std::span<const FunctionRow> Functions();

/// Null when there is no function of that name and arity.
const FunctionRow* FindFunction(CVelmStringView name, std::int32_t arity);

}  // namespace velm
