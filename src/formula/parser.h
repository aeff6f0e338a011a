#pragma once

#include <vector>

#include "formula/formula_token.h"

namespace velm {

/// Parses a lower-cased formula without evaluating or looking up anything. A blank text yields an empty list; a syntax
/// error yields a list whose head is an error token with its position. Only a trailing operator leaves its error token
/// inside the list.
FormulaTokenList ParseFormula(CVelmStringView text);

/// The same into `list`, from the text that it holds; `stack` is working storage. Neither is shrunk.
void ParseFormula(FormulaTokenList& list, std::vector<FormulaToken>& stack);

}  // namespace velm
