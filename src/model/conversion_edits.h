#pragma once

#include "model/conversion_document.h"
#include "model/entry_fault.h"
#include "platform/text.h"

namespace velm {

/// What a user enters for a new conversion: two units of the document (null: none chosen) and either the texts of
/// factor and offset, which are formulas to evaluate, or those of two formulas in "x".
struct CVelmConversionEntry {
    CVelmItem* unit1 = nullptr;
    CVelmItem* unit2 = nullptr;
    bool isFormula = false;
    CVelmString factor;
    CVelmString offset;
    CVelmString forward;
    CVelmString reverse;  ///< empty: the conversion works one way
};

enum class ConversionField { Factor, Offset, Forward, Reverse };

// Each edit stamps the document. One with a fault changes nothing.

/// Appends a conversion.
EntryFault AddNewConversion(CVelmConversionDoc& document, const CVelmConversionEntry& entry, FormulaContext& context);

/// Whether conversions of its kind have the field, and its text there.
bool HasField(const CVelmConversion& conversion, ConversionField field);
CVelmString FieldText(const CVelmConversion& conversion, ConversionField field);

/// Takes the text of a field: a formula as it stands, a factor or an offset only when it evaluates. FieldText's own
/// leaves a number with the digits that it does not show.
void EditField(CVelmConversionDoc& document, CVelmConversion& conversion, ConversionField field,
               const CVelmString& text, FormulaContext& context);

void DeleteConversion(CVelmConversionDoc& document, const CVelmConversion& conversion);

}  // namespace velm
