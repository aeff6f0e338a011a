#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "formula/cached_formula.h"
#include "model/item.h"

namespace velm {

class CVelmConversionDoc;
class CVelmFileStream;

/// A direct conversion between two units of one document: linear (unit 2 = unit 1 x factor + offset) or a pair
/// of formulas in "x".
class CVelmConversion {
public:
    /// The document is not owned; reading turns item indices into pointers through it.
    explicit CVelmConversion(CVelmConversionDoc& document) : document_(&document) {}

    /// Only the low 16 bits matter: zero is linear.
    bool IsFormula() const { return (formulaFlag & 0xFFFF) != 0; }

    /// Whether the conversion applies from unit 1 to unit 2, and from unit 2 to unit 1, even if it then fails.
    bool WorksForward() const { return !IsFormula() || !forwardFormula.empty(); }
    bool WorksInReverse() const { return !IsFormula() || !reverseFormula.empty(); }

    /// Computes unit 2 from unit 1, which needs state 1. False when the step does not apply, with nothing changed.
    /// True otherwise, also for a formula that fails, a zero factor in reverse and a result that is not finite:
    /// the target then has state 2 and its old value. The variable "x" is unbound afterwards.
    bool ApplyForward(FormulaContext& context);

    /// The same from unit 2 to unit 1.
    bool ApplyInReverse(FormulaContext& context);

    /// Bytes counted; Read gives 0 on failure, an index outside the items included.
    std::int32_t Write(CVelmFileStream& stream) const;
    std::int32_t Read(CVelmFileStream& stream);

    std::int32_t formulaFlag = 0;
    CVelmItem* unit1 = nullptr;  ///< not owned
    CVelmItem* unit2 = nullptr;  ///< not owned
    double factor = 1.0;
    double offset = 0.0;
    CVelmString forwardFormula;  ///< computes unit 2; empty: does not apply in this direction
    CVelmString reverseFormula;  ///< computes unit 1

private:
    CVelmConversionDoc* document_;
    CVelmCachedFormula forward_;
    CVelmCachedFormula reverse_;
};

using CVelmConversions = std::vector<std::unique_ptr<CVelmConversion>>;

}  // namespace velm
