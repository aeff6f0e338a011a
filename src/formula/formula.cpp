#include "formula/formula.h"

#include "formula/compiler.h"

namespace velm {

CVelmFormula::CVelmFormula(CVelmStringView text) {
    FormulaCompiler().Compile(text, program_);
    program_.FindLinear();
}

}  // namespace velm
