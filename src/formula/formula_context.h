#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <unordered_map>

#include "formula/random.h"
#include "platform/clock.h"
#include "platform/text.h"

namespace velm {

class FormulaWorkspace;

enum class AngleMode : std::int32_t { Radians = 0, Degrees = 1, Grads = 2 };

/// The name that conversion formulas bind their input to.
inline constexpr CVelmStringView X_NAME = u"x";

/// The evaluator's state: named values, angle mode, random generator and clock. Lives for the whole run.
class FormulaContext {
public:
    /// The clock is not owned and outlives the context; its local time seeds the random generator.
    explicit FormulaContext(const CVelmClock& clock);
    ~FormulaContext();
    FormulaContext(const FormulaContext&) = delete;
    FormulaContext& operator=(const FormulaContext&) = delete;

    const CVelmClock& Clock() const { return clock_; }
    CVelmRandom& Random() { return random_; }

    AngleMode Angle() const { return angle_; }
    void SetAngle(AngleMode angle) { angle_ = angle; }

    /// DefineVariable and UndefineVariable of "x" without the parsing, for evaluation in a loop.
    void BindX(double value);
    void UnbindX();

    /// The value bound to a plain name in lower case, built-in names aside. A NaN when there is none.
    double ValueOf(CVelmStringView name) const;
    double XValue() const { return xValue_; }

    /// Used by the operations below.
    void Bind(CVelmStringView name, double value);
    bool Unbind(CVelmStringView name);
    FormulaWorkspace& Workspace() { return *workspace_; }

private:
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(CVelmStringView name) const { return std::hash<CVelmStringView>()(name); }
    };

    const CVelmClock& clock_;
    CVelmRandom random_;
    AngleMode angle_ = AngleMode::Radians;
    std::unordered_map<CVelmString, double, NameHash, std::equal_to<>> definitions_;
    bool xBound_ = false;
    double xValue_ = std::numeric_limits<double>::quiet_NaN();  ///< a NaN, which fails, while x is not bound
    std::unique_ptr<FormulaWorkspace> workspace_;
};

/// Evaluates a formula text with the current definitions. Letter case does not matter.
/// False, with `result` untouched, for an empty text, a syntax error and every failure of evaluation.
bool EvaluateFormula(FormulaContext& context, CVelmStringView text, double& result);

/// Whether the text is one plain name that a value can be bound to.
bool IsPlainName(CVelmStringView text);

/// That name as it is bound, in lower case; empty for any other text. Valid until the next formula or name is parsed.
CVelmStringView PlainName(FormulaContext& context, CVelmStringView text);

/// Binds one plain name to a value, replacing an earlier binding. False when `name` is not one plain name.
bool DefineVariable(FormulaContext& context, CVelmStringView name, double value);

/// Removes a binding. False when `name` is not one plain name or is not bound.
bool UndefineVariable(FormulaContext& context, CVelmStringView name);

/// Steps radians, degrees, grads, radians, and returns the new mode's label: "Rad", "Deg" or "Gra".
const char16_t* CycleAngleMode(FormulaContext& context);
const char16_t* AngleModeLabel(const FormulaContext& context);

}  // namespace velm
