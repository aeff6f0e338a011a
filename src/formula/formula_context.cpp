#include "formula/formula_context.h"

#include <array>
#include <utility>

#include "formula/compiler.h"

namespace velm {

/// Working storage of an evaluation, kept to avoid reallocating it.
class FormulaWorkspace {
public:
    FormulaCompiler compiler;
    FormulaProgram program;
};

namespace {

constexpr std::array<const char16_t*, 3> ANGLE_LABELS = {u"Rad", u"Deg", u"Gra"};

/// The lower-case name that the text consists of, empty when it is not one plain name.
CVelmStringView ParseName(FormulaCompiler& compiler, CVelmStringView text) {
    const FormulaTokenList& list = compiler.Parse(text);
    const bool isName =
        list.tokens.size() == 1 && list.Head().kind == FormulaTokenKind::Identifier && list.Head().operandCount == 0;
    return isName ? list.Name(list.Head()) : CVelmStringView();
}

}  // namespace

FormulaContext::FormulaContext(const CVelmClock& clock)
    : clock_(clock),
      random_(static_cast<std::uint32_t>(clock.LocalFileTime())),
      workspace_(std::make_unique<FormulaWorkspace>()) {}

FormulaContext::~FormulaContext() = default;

void FormulaContext::BindX(double value) {
    xValue_ = value;
    xBound_ = true;
}

void FormulaContext::UnbindX() {
    xValue_ = std::numeric_limits<double>::quiet_NaN();
    xBound_ = false;
}

double FormulaContext::ValueOf(CVelmStringView name) const {
    const auto found = definitions_.find(name);
    return found == definitions_.end() ? std::numeric_limits<double>::quiet_NaN() : found->second;
}

void FormulaContext::Bind(CVelmStringView name, double value) {
    if (name == X_NAME) {
        BindX(value);
        return;
    }
    const auto found = definitions_.find(name);
    if (found == definitions_.end()) {
        definitions_.emplace(name, value);
    } else {
        found->second = value;
    }
}

bool FormulaContext::Unbind(CVelmStringView name) {
    if (name == X_NAME) {
        const bool wasBound = xBound_;
        UnbindX();
        return wasBound;
    }
    const auto found = definitions_.find(name);
    if (found == definitions_.end()) {
        return false;
    }
    definitions_.erase(found);
    return true;
}

bool EvaluateFormula(FormulaContext& context, CVelmStringView text, double& result) {
    FormulaWorkspace& workspace = context.Workspace();
    workspace.compiler.Compile(text, workspace.program);
    return workspace.program.Run(context, result);
}

bool IsPlainName(CVelmStringView text) {
    FormulaCompiler compiler;
    return !ParseName(compiler, text).empty();
}

CVelmStringView PlainName(FormulaContext& context, CVelmStringView text) {
    return ParseName(context.Workspace().compiler, text);
}

bool DefineVariable(FormulaContext& context, CVelmStringView name, double value) {
    const CVelmStringView plainName = PlainName(context, name);
    if (plainName.empty()) {
        return false;
    }
    context.Bind(plainName, value);
    return true;
}

bool UndefineVariable(FormulaContext& context, CVelmStringView name) {
    const CVelmStringView plainName = PlainName(context, name);
    return !plainName.empty() && context.Unbind(plainName);
}

const char16_t* CycleAngleMode(FormulaContext& context) {
    const auto next = static_cast<std::size_t>(context.Angle()) + 1;
    context.SetAngle(static_cast<AngleMode>(next % ANGLE_LABELS.size()));
    return AngleModeLabel(context);
}

const char16_t* AngleModeLabel(const FormulaContext& context) {
    return ANGLE_LABELS[static_cast<std::size_t>(context.Angle())];
}

}  // namespace velm
