#pragma once

#include "formula/formula_context.h"
#include "model/conversion.h"
#include "model/document.h"
#include "platform/text.h"

namespace velm {

/// What is entered for an item of a document besides its name.
struct CVelmItemEntry {
    CVelmString identifier;
    CVelmString valueText;
    bool isOutput = false;
};

/// Why an entry for an item, or for a conversion, could never work.
enum class EntryFault {
    None,
    IdentifierIsNoName,     ///< formulas cannot name the item
    IdentifierIsBuiltIn,    ///< formulas that name it mean the language's own value
    IdentifierIsTaken,      ///< by another item of the file
    FormulaDoesNotParse,    ///< an output's
    FactorDoesNotEvaluate,  ///< a linear conversion's
    OffsetDoesNotEvaluate,
    ForwardFormulaDoesNotParse,
    ReverseFormulaDoesNotParse,  ///< an empty one is none: the conversion works one way
};

/// Checks what is entered for `item`, which is the document's or new. Only a calculation file uses identifiers in
/// formulas; there letter case does not tell them apart. An empty identifier is always good.
EntryFault CheckItemEntry(const CVelmDocument& document, const CVelmItem& item, const CVelmItemEntry& entry,
                          const CVelmClock& clock);

/// Factor and offset as typed: formulas.
struct CVelmLinearEntry {
    CVelmString factor;
    CVelmString offset;
};

/// Evaluates both into the conversion, which is left as it was when one of them does not evaluate.
EntryFault TakeLinearEntry(const CVelmLinearEntry& entry, FormulaContext& context, CVelmConversion& conversion);

/// Checks the two formulas of a conversion.
EntryFault CheckFormulaPair(CVelmStringView forward, CVelmStringView reverse);

}  // namespace velm
