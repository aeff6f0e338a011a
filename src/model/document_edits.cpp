#include "model/document_edits.h"

#include <algorithm>
#include <utility>

#include "formats/decimal_format.h"
#include "formula/formula.h"
#include "formula/functions.h"
#include "formula/tokenizer.h"
#include "model/catalog.h"
#include "model/file_names.h"

namespace velm {
namespace {

/// With so many conversions a unit may be a bridge between others.
constexpr std::int32_t BRIDGE_CONVERSIONS = 2;

void LimitText(CVelmString& entered, const CVelmString& held) {
    if (entered != held && entered.size() > ENTRY_TEXT_MAX) {
        entered.resize(ENTRY_TEXT_MAX);
    }
}

bool Parses(CVelmStringView formula) {
    return CVelmFormula(formula).Parses();
}

/// Only a calculation file uses identifiers in formulas; there letter case does not tell them apart.
EntryFault CheckIdentifier(const CVelmDocument& document, const CVelmItem& item, const CVelmString& identifier) {
    if (identifier.empty()) {
        return EntryFault::None;
    }
    const bool inFormulas = document.GetKind() == KIND_CALCULATION;
    if (inFormulas && !IsPlainName(identifier)) {
        return EntryFault::IdentifierIsNoName;
    }
    if (inFormulas && FindFunction(ToLowerAscii(identifier), 0) != nullptr) {
        return EntryFault::IdentifierIsBuiltIn;
    }
    const bool taken = std::any_of(document.items.begin(), document.items.end(), [&](const auto& other) {
        return other.get() != &item && (inFormulas ? ToLowerAscii(other->identifier) == ToLowerAscii(identifier)
                                                   : other->identifier == identifier);
    });
    return taken ? EntryFault::IdentifierIsTaken : EntryFault::None;
}

EntryFault CheckItem(const CVelmDocument& document, const CVelmItem& item, const CVelmItemEntry& entry,
                     const CVelmClock& clock) {
    if (entry.name.empty()) {
        return EntryFault::NameIsEmpty;
    }
    const EntryFault fault = CheckIdentifier(document, item, entry.identifier);
    if (fault != EntryFault::None || entry.output != 1) {
        return fault;
    }
    CVelmString formula = entry.valueText;
    return item.format.ToFormula(formula, clock) && Parses(formula) ? EntryFault::None
                                                                    : EntryFault::FormulaDoesNotParse;
}

bool IsEmptyOrParses(CVelmStringView formula) {
    return formula.empty() || Parses(formula);
}

EntryFault TakeFormulas(const CVelmConversionEntry& entry, CVelmConversion& conversion) {
    conversion.formulaFlag = 1;
    conversion.forwardFormula = entry.forward;
    conversion.reverseFormula = entry.reverse;
    if (!IsEmptyOrParses(entry.forward)) {
        return EntryFault::ForwardFormulaDoesNotParse;
    }
    return IsEmptyOrParses(entry.reverse) ? EntryFault::None : EntryFault::ReverseFormulaDoesNotParse;
}

EntryFault TakeNumbers(const CVelmConversionEntry& entry, FormulaContext& context, CVelmConversion& conversion) {
    if (!EvaluateFormula(context, entry.factor, conversion.factor)) {
        return EntryFault::FactorDoesNotEvaluate;
    }
    return EvaluateFormula(context, entry.offset, conversion.offset) ? EntryFault::None
                                                                     : EntryFault::OffsetDoesNotEvaluate;
}

constexpr double MAX_PART_FACTOR = 1e20;

/// The compound parts that an item uses; the others are empty.
CVelmCompoundParts PartsInUse(const CVelmValueFormat& format) {
    CVelmCompoundParts parts;
    for (std::size_t i = 0; (format.allowedFormats & FMT_COMPOUND) != 0 && i < parts.size(); ++i) {
        if (i > 0 && format.compoundParts[i].factor == 0.0) {
            break;
        }
        parts[i] = format.compoundParts[i];
    }
    parts[0].factor = 1.0;
    return parts;
}

/// Reads the factor of a part whose text was changed; an empty one is 0, which ends the parts.
bool ReadFactor(const CVelmString& text, double& factor) {
    if (text == NumberToText(factor)) {
        return factor >= 0.0 && factor <= MAX_PART_FACTOR;
    }
    factor = 0.0;
    return text.empty() || (ScanNumber(ToLowerAscii(text), factor) && factor >= 0.0 && factor <= MAX_PART_FACTOR);
}

}  // namespace

CVelmItemEntry EntryOf(const CVelmItem& item) {
    const bool hasOutput = item.GetType() == ITEM_FORMULA;
    return {item.name, item.identifier, item.valueText,
            hasOutput ? static_cast<const CVelmFormulaItem&>(item).output : 0};
}

std::int32_t ItemTypeOf(std::int32_t kind) {
    return kind == KIND_CONVERSION ? ITEM_VALUE : ITEM_FORMULA;
}

EntryFault AddNewItem(CVelmDocument& document, const CVelmItemEntry& entry, const CVelmClock& clock) {
    auto item = CreateItem(ItemTypeOf(document.GetKind()));
    const EntryFault fault = EditItem(document, *item, entry, clock);
    if (fault == EntryFault::None) {
        document.AddItem(std::move(item));
    }
    return fault;
}

EntryFault EditItem(CVelmDocument& document, CVelmItem& item, CVelmItemEntry entry, const CVelmClock& clock) {
    LimitText(entry.name, item.name);
    LimitText(entry.identifier, item.identifier);
    LimitText(entry.valueText, item.valueText);
    if (const EntryFault fault = CheckItem(document, item, entry, clock); fault != EntryFault::None) {
        return fault;
    }
    if (document.GetKind() == KIND_CALCULATION && item.valueText != entry.valueText) {
        item.state = STATE_NONE;
    }
    item.name = std::move(entry.name);
    item.identifier = std::move(entry.identifier);
    item.valueText = std::move(entry.valueText);
    if (item.GetType() == ITEM_FORMULA) {
        static_cast<CVelmFormulaItem&>(item).output = entry.output;
    }
    document.Touch();
    return EntryFault::None;
}

CVelmFormatEntry EntryOf(const CVelmValueFormat& format) {
    CVelmFormatEntry entry{format.allowedFormats, {}};
    const CVelmCompoundParts parts = PartsInUse(format);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        entry.parts[i] = {NumberToText(parts[i].factor), parts[i].label};
    }
    return entry;
}

EntryFault EditFormats(CVelmValueFormat& format, const CVelmFormatEntry& entry, std::size_t& part) {
    CVelmCompoundParts parts = PartsInUse(format);
    for (part = 1; part < parts.size(); ++part) {
        if (!ReadFactor(entry.parts[part].first, parts[part].factor)) {
            return EntryFault::FactorIsOutOfRange;
        }
    }
    for (part = 0; part < parts.size(); ++part) {
        if (entry.parts[part].second.size() > MAX_PART_LABELS[part]) {
            return EntryFault::LabelIsTooLong;
        }
    }
    format.SetAllowedFormats(entry.allowed);
    for (std::size_t i = 0; (entry.allowed & FMT_COMPOUND) != 0 && i < parts.size(); ++i) {
        format.compoundParts[i].factor = parts[i].factor;
        if (parts[i].factor == 0.0) {
            break;
        }
        format.compoundParts[i].label = entry.parts[i].second;
    }
    return EntryFault::None;
}

void MoveItem(CVelmDocument& document, std::size_t from, std::size_t to) {
    auto item = std::move(document.items[from]);
    document.items.erase(document.items.begin() + static_cast<std::ptrdiff_t>(from));
    document.items.insert(document.items.begin() + static_cast<std::ptrdiff_t>(to), std::move(item));
    document.Touch();
}

bool ShowItems(CVelmDocument& document, const std::vector<bool>& shown) {
    bool changed = false;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const std::int32_t flag = shown[i] ? 1 : 0;
        changed = changed || document.items[i]->shown != flag;
        document.items[i]->shown = flag;
    }
    if (changed) {
        document.Touch();
    }
    return changed;
}

void HideItem(CVelmDocument& document, CVelmItem& item) {
    item.shown = 0;
    document.Touch();
}

CVelmString DeletionQuestion(const CVelmDocument& document, const CVelmItem& item) {
    const CVelmString name = u"\"" + item.name + u"\"";
    if (document.GetKind() != KIND_CONVERSION) {
        return name + u" may be used to calculate other output values.\nDo you really want to delete?";
    }
    if (static_cast<const CVelmConversionDoc&>(document).CountConversions(&item) < BRIDGE_CONVERSIONS) {
        return u"Do you want to delete " + name + u"?";
    }
    return name +
           u" has multiple direct conversion formulas attached to it. It may be used as a bridge to convert between "
           u"other units.\nDo you really want to delete?";
}

void DeleteItem(CVelmDocument& document, const CVelmItem& item) {
    document.RemoveItem(&item);
    document.Touch();
}

CVelmConversionEntry EntryOf(const CVelmConversion& conversion) {
    return {conversion.IsFormula(), FormatDecimal(conversion.factor, false), FormatDecimal(conversion.offset, false),
            conversion.forwardFormula, conversion.reverseFormula};
}

EntryFault AddNewConversion(CVelmConversionDoc& document, CVelmItem* unit1, CVelmItem* unit2,
                            const CVelmConversionEntry& entry, FormulaContext& context) {
    if (unit1 == nullptr) {
        return EntryFault::FirstUnitIsMissing;
    }
    if (unit2 == nullptr) {
        return EntryFault::SecondUnitIsMissing;
    }
    if (unit1 == unit2 || document.FindConversion(unit1, unit2) != nullptr) {
        return EntryFault::ConversionExists;
    }
    auto conversion = std::make_unique<CVelmConversion>(document);
    conversion->unit1 = unit1;
    conversion->unit2 = unit2;
    const EntryFault fault =
        entry.isFormula ? TakeFormulas(entry, *conversion) : TakeNumbers(entry, context, *conversion);
    if (fault == EntryFault::None) {
        document.AddConversion(std::move(conversion));
        document.Touch();
    }
    return fault;
}

void EditConversion(CVelmConversionDoc& document, CVelmConversion& conversion, const CVelmConversionEntry& entry,
                    FormulaContext& context) {
    // An untouched text shows fewer digits than its number has.
    const CVelmConversionEntry before = EntryOf(conversion);
    if (conversion.IsFormula()) {
        conversion.forwardFormula = entry.forward;
        conversion.reverseFormula = entry.reverse;
    } else {
        if (entry.factor != before.factor) {
            EvaluateFormula(context, entry.factor, conversion.factor);
        }
        if (entry.offset != before.offset) {
            EvaluateFormula(context, entry.offset, conversion.offset);
        }
    }
    document.Touch();
}

void DeleteConversion(CVelmConversionDoc& document, const CVelmConversion& conversion) {
    document.RemoveConversion(&conversion);
    document.Touch();
}

EntryFault EditFile(CVelmDocument& document, CVelmFileEntry entry, const CVelmCatalog& catalog) {
    LimitText(entry.title, document.title);
    LimitText(entry.category, document.category);
    if (entry.title.empty()) {
        return EntryFault::TitleIsEmpty;
    }
    if (document.fileName.empty()) {
        if (!IsFileNameAllowed(entry.fileName)) {
            return EntryFault::FileNameIsNotAllowed;
        }
        if (IsFileNameTaken(catalog, document.GetKind(), entry.fileName)) {
            return EntryFault::FileNameIsTaken;
        }
        document.fileName = std::move(entry.fileName);
    }
    document.title = std::move(entry.title);
    document.category = std::move(entry.category);
    document.Touch();
    return EntryFault::None;
}

}  // namespace velm
