#pragma once

#include <vector>

#include "formula/formula_token.h"

namespace velm {

/// Parses a formula that is lower-cased already. Nothing is evaluated or looked up. An empty or blank text gives
/// an empty list; a syntax error gives a list whose head is an error token, which says where it was met. Only a
/// trailing operator leaves its error token inside the list.
FormulaTokenList ParseFormula(CVelmStringView text);

/// The same into `list`, from the text that it holds; `stack` is working storage. Both keep their memory.
void ParseFormula(FormulaTokenList& list, std::vector<FormulaToken>& stack);

}  // namespace velm
