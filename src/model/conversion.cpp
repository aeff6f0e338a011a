#include "model/conversion.h"

#include <cmath>
#include <optional>

#include "model/conversion_document.h"
#include "model/file_stream.h"

namespace velm {

namespace {

std::optional<double> EvaluateAt(const CVelmFormula& formula, double x, FormulaContext& context) {
    double result = 0.0;
    context.BindX(x);
    const bool evaluated = formula.Evaluate(context, result);
    context.UnbindX();
    return evaluated ? std::optional(result) : std::nullopt;
}

void StoreResult(CVelmItem& unit, std::optional<double> result) {
    if (result && std::isfinite(*result)) {
        unit.SetValue(*result);
    } else {
        unit.state = STATE_ERROR;
    }
}

}  // namespace

bool CVelmConversion::ApplyForward(FormulaContext& context) {
    if (unit1->state != STATE_VALID || !WorksForward()) {
        return false;
    }
    if (IsFormula()) {
        StoreResult(*unit2, EvaluateAt(forward_.Of(forwardFormula), unit1->value, context));
    } else {
        StoreResult(*unit2, unit1->value * factor + offset);
    }
    return true;
}

bool CVelmConversion::ApplyInReverse(FormulaContext& context) {
    if (unit2->state != STATE_VALID || !WorksInReverse()) {
        return false;
    }
    if (IsFormula()) {
        StoreResult(*unit1, EvaluateAt(reverse_.Of(reverseFormula), unit2->value, context));
    } else {
        StoreResult(*unit1, factor == 0.0 ? std::nullopt : std::optional((unit2->value - offset) / factor));
    }
    return true;
}

std::int32_t CVelmConversion::Write(CVelmFileStream& stream) const {
    const std::uint64_t start = stream.Position();
    stream.WriteInt(formulaFlag);
    stream.WriteInt(unit1->index);
    stream.WriteInt(unit2->index);
    if (IsFormula()) {
        stream.WriteString(forwardFormula);
        stream.WriteString(reverseFormula);
    } else {
        stream.WriteDouble(factor);
        stream.WriteDouble(offset);
    }
    return stream.BytesSince(start);
}

std::int32_t CVelmConversion::Read(CVelmFileStream& stream) {
    const std::uint64_t start = stream.Position();
    std::int32_t index1 = 0;
    std::int32_t index2 = 0;
    if (!stream.ReadInt(formulaFlag) || !stream.ReadInt(index1) || !stream.ReadInt(index2)) {
        return 0;
    }
    const bool whole = IsFormula() ? stream.ReadString(forwardFormula) > 0 && stream.ReadString(reverseFormula) > 0
                                   : stream.ReadDouble(factor) && stream.ReadDouble(offset);
    if (!whole) {
        return 0;
    }
    const auto itemAt = [this](std::int32_t index) {
        const auto position = static_cast<std::size_t>(index);
        return index >= 0 && position < document_->ItemCount() ? document_->GetItem(position) : nullptr;
    };
    // Resolved last, so that a record with a bad index is consumed completely.
    unit1 = itemAt(index1);
    unit2 = itemAt(index2);
    return unit1 != nullptr && unit2 != nullptr ? stream.BytesSince(start) : 0;
}

}  // namespace velm
