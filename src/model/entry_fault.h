#pragma once

namespace velm {

/// Why what a user entered is refused.
enum class EntryFault {
    None,
    NameIsEmpty,
    IdentifierIsNoName,     ///< formulas cannot name the item
    IdentifierIsBuiltIn,    ///< formulas that name it mean the language's own value
    IdentifierIsTaken,      ///< by another item of the file
    FormulaDoesNotParse,    ///< an output's
    FirstUnitIsMissing,     ///< of a conversion
    SecondUnitIsMissing,    ///< of a conversion
    ConversionExists,       ///< or it would convert a unit to itself
    FactorDoesNotEvaluate,  ///< a linear conversion's
    OffsetDoesNotEvaluate,  ///< a linear conversion's
    ForwardFormulaDoesNotParse,
    ReverseFormulaDoesNotParse,
    TitleIsEmpty,
    FileNameIsNotAllowed,
    FileNameIsTaken,
};

}  // namespace velm
