#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "model/conversion_document.h"
#include "model/file_stream.h"
#include "platform/text.h"

namespace velm {

class CVelmCatalog;

// What users do to documents. Each edit stamps the document; one with a fault changes nothing.

/// The longest text that is entered for an item or a file, in UTF-16 units. A longer one is cut, but one that a file
/// holds stays whole as long as it is entered unchanged.
constexpr std::size_t ENTRY_TEXT_MAX = 127;

/// Why what a user entered is refused.
enum class EntryFault {
    None,
    NameIsEmpty,
    IdentifierIsNoName,   ///< formulas cannot name the item
    IdentifierIsBuiltIn,  ///< formulas that name it mean the language's own value
    IdentifierIsTaken,    ///< by another item of the file
    FormulaDoesNotParse,  ///< an output's
    FactorIsOutOfRange,   ///< of a compound part
    LabelIsTooLong,       ///< of a compound part
    FirstUnitIsMissing,
    SecondUnitIsMissing,
    ConversionExists,  ///< or the units are one and the same
    FactorDoesNotEvaluate,
    OffsetDoesNotEvaluate,
    ForwardFormulaDoesNotParse,
    ReverseFormulaDoesNotParse,
    TitleIsEmpty,
    FileNameIsNotAllowed,
    FileNameIsTaken,
};

/// What a user enters for an item.
struct CVelmItemEntry {
    CVelmString name;
    CVelmString identifier;  ///< may be empty
    CVelmString valueText;
    std::int32_t output = 0;  ///< 1: computed by its formula, the value text; counts in calculation files alone
};
CVelmItemEntry EntryOf(const CVelmItem& item);

/// The type of a new item.
std::int32_t ItemTypeOf(std::int32_t kind);

/// Appends an item.
EntryFault AddNewItem(CVelmDocument& document, const CVelmItemEntry& entry, const CVelmClock& clock);

/// An input of a calculation file whose text has changed has no value until the next recalculation reads it.
EntryFault EditItem(CVelmDocument& document, CVelmItem& item, CVelmItemEntry entry, const CVelmClock& clock);

/// What a user enters for the formats of an item: those allowed, and factor and label of each compound part.
struct CVelmFormatEntry {
    std::uint32_t allowed = 0;
    std::array<std::pair<CVelmString, CVelmString>, COMPOUND_PARTS> parts;
};
CVelmFormatEntry EntryOf(const CVelmValueFormat& format);

/// The longest label of each part. Deliberate: the third has no limit, files with longer ones there keep them.
constexpr std::array<std::size_t, COMPOUND_PARTS> MAX_PART_LABELS = {8, 8, CVelmFileStream::MAX_STRING, 8};

/// With a fault `part` is the part that has it. A factor with EntryOf's text keeps its digits. The caller stamps the
/// document that the item is in.
EntryFault EditFormats(CVelmValueFormat& format, const CVelmFormatEntry& entry, std::size_t& part);

/// Moves an item between two positions.
void MoveItem(CVelmDocument& document, std::size_t from, std::size_t to);

/// Shows or hides all items in the list, by position. False, with nothing stamped, when they were so already.
bool ShowItems(CVelmDocument& document, const std::vector<bool>& shown);
void HideItem(CVelmDocument& document, CVelmItem& item);

/// What is asked before an item is deleted: what depends on it decides.
CVelmString DeletionQuestion(const CVelmDocument& document, const CVelmItem& item);

/// Deletes an item with its conversions.
void DeleteItem(CVelmDocument& document, const CVelmItem& item);

/// What a user enters for a conversion: the texts of factor and offset, which are evaluated, or two formulas in "x".
struct CVelmConversionEntry {
    bool isFormula = false;
    CVelmString factor;
    CVelmString offset;
    CVelmString forward;  ///< empty: the conversion does not work in this direction
    CVelmString reverse;  ///< the same
};
CVelmConversionEntry EntryOf(const CVelmConversion& conversion);

/// Appends a conversion between two units of the document; null: none was chosen.
EntryFault AddNewConversion(CVelmConversionDoc& document, CVelmItem* unit1, CVelmItem* unit2,
                            const CVelmConversionEntry& entry, FormulaContext& context);

/// Takes formulas as they stand; a factor or offset that does not evaluate stays, as does one with EntryOf's text.
void EditConversion(CVelmConversionDoc& document, CVelmConversion& conversion, const CVelmConversionEntry& entry,
                    FormulaContext& context);
void DeleteConversion(CVelmConversionDoc& document, const CVelmConversion& conversion);

/// What a user enters for a document. One without a file name is new and gets it here; no other file may have it.
struct CVelmFileEntry {
    CVelmString title;
    CVelmString category;
    CVelmString fileName;  ///< without extension
};
EntryFault EditFile(CVelmDocument& document, CVelmFileEntry entry, const CVelmCatalog& catalog);

}  // namespace velm
