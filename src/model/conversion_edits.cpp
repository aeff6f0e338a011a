#include "model/conversion_edits.h"

#include <utility>

#include "formats/decimal_format.h"
#include "formula/formula.h"

namespace velm {
namespace {

EntryFault TakeNumbers(const CVelmConversionEntry& entry, FormulaContext& context, CVelmConversion& conversion) {
    if (!EvaluateFormula(context, entry.factor, conversion.factor)) {
        return EntryFault::FactorDoesNotEvaluate;
    }
    return EvaluateFormula(context, entry.offset, conversion.offset) ? EntryFault::None
                                                                     : EntryFault::OffsetDoesNotEvaluate;
}

EntryFault TakeFormulas(const CVelmConversionEntry& entry, CVelmConversion& conversion) {
    conversion.formulaFlag = 1;
    conversion.forwardFormula = entry.forward;
    conversion.reverseFormula = entry.reverse;
    if (!CVelmFormula(entry.forward).Parses()) {
        return EntryFault::ForwardFormulaDoesNotParse;
    }
    const bool reverseWorks = entry.reverse.empty() || CVelmFormula(entry.reverse).Parses();
    return reverseWorks ? EntryFault::None : EntryFault::ReverseFormulaDoesNotParse;
}

}  // namespace

EntryFault AddNewConversion(CVelmConversionDoc& document, const CVelmConversionEntry& entry, FormulaContext& context) {
    if (entry.unit1 == nullptr) {
        return EntryFault::FirstUnitIsMissing;
    }
    if (entry.unit2 == nullptr) {
        return EntryFault::SecondUnitIsMissing;
    }
    if (entry.unit1 == entry.unit2 || document.FindConversion(entry.unit1, entry.unit2) != nullptr) {
        return EntryFault::ConversionExists;
    }
    auto conversion = std::make_unique<CVelmConversion>(document);
    conversion->unit1 = entry.unit1;
    conversion->unit2 = entry.unit2;
    const EntryFault fault =
        entry.isFormula ? TakeFormulas(entry, *conversion) : TakeNumbers(entry, context, *conversion);
    if (fault == EntryFault::None) {
        document.AddConversion(std::move(conversion));
        document.Touch();
    }
    return fault;
}

bool HasField(const CVelmConversion& conversion, ConversionField field) {
    return conversion.IsFormula() == (field == ConversionField::Forward || field == ConversionField::Reverse);
}

CVelmString FieldText(const CVelmConversion& conversion, ConversionField field) {
    switch (field) {
        case ConversionField::Factor:
            return FormatDecimal(conversion.factor, false);
        case ConversionField::Offset:
            return FormatDecimal(conversion.offset, false);
        case ConversionField::Forward:
            return conversion.forwardFormula;
        default:
            return conversion.reverseFormula;
    }
}

void EditField(CVelmConversionDoc& document, CVelmConversion& conversion, ConversionField field,
               const CVelmString& text, FormulaContext& context) {
    if (!HasField(conversion, field) || text == FieldText(conversion, field)) {
        return;
    }
    bool taken = true;
    switch (field) {
        case ConversionField::Factor:
            taken = EvaluateFormula(context, text, conversion.factor);
            break;
        case ConversionField::Offset:
            taken = EvaluateFormula(context, text, conversion.offset);
            break;
        case ConversionField::Forward:
            conversion.forwardFormula = text;
            break;
        case ConversionField::Reverse:
            conversion.reverseFormula = text;
            break;
    }
    if (taken) {
        document.Touch();
    }
}

void DeleteConversion(CVelmConversionDoc& document, const CVelmConversion& conversion) {
    document.RemoveConversion(&conversion);
    document.Touch();
}

}  // namespace velm
