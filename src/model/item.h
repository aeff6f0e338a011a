#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "formats/value_format.h"
#include "platform/text.h"

namespace velm {

class CVelmFileStream;

/// Item type codes, as written in files.
constexpr std::int32_t ITEM_VALUE = 1;
constexpr std::int32_t ITEM_FORMULA = 2;

/// State of an item's value.
constexpr std::int32_t STATE_NONE = 0;
constexpr std::int32_t STATE_VALID = 1;
constexpr std::int32_t STATE_ERROR = 2;

/// One unit of a conversion file, or one input or output of a calculation file.
class CVelmItem {
public:
    virtual ~CVelmItem() = default;

    /// True when the item is computed by its formula.
    virtual bool IsOutput() const { return false; }
    virtual std::int32_t GetType() const = 0;

    /// Bytes counted; the readers give 0 on failure. The type code before the record is the document's.
    virtual std::int32_t Write(CVelmFileStream& stream) const;
    virtual std::int32_t Read(CVelmFileStream& stream);
    virtual std::int32_t ReadOld(CVelmFileStream& stream);

    /// Copies everything but the index and the shown-in-list flag.
    virtual void CopyFrom(const CVelmItem& other);

    void SetValue(double newValue) {
        value = newValue;
        state = STATE_VALID;
    }

    /// The value of the stored text. False, with `stored` untouched, when the text has none.
    bool ReadStoredValue(FormulaContext& context, double& stored) const {
        return format.ParseValueText(valueText, context, stored);
    }

    /// The text for narrow columns: the identifier when there is one, otherwise the name.
    const CVelmString& ShortName() const;

    /// The list's text for the value: empty without one, "Error" when it cannot be computed.
    CVelmString ValueInList(const CVelmLocale& locale) const;

    std::int32_t index = 0;  ///< position in the document; right only just after a save, a load or a recalculation
    CVelmString name;
    CVelmValueFormat format;
    std::int32_t shown = 1;  ///< 0 hides the item from the list; it may still be a bridge
    CVelmString identifier;
    double value = 0.0;
    std::int32_t state = STATE_NONE;
    CVelmString valueText;  ///< an input's value as typed or stored; an output's formula
};

class CVelmValueItem : public CVelmItem {
public:
    std::int32_t GetType() const override { return ITEM_VALUE; }
};

class CVelmFormulaItem : public CVelmItem {
public:
    bool IsOutput() const override { return output == 1; }
    std::int32_t GetType() const override { return ITEM_FORMULA; }
    std::int32_t Write(CVelmFileStream& stream) const override;
    std::int32_t Read(CVelmFileStream& stream) override;
    std::int32_t ReadOld(CVelmFileStream& stream) override;
    void CopyFrom(const CVelmItem& other) override;

    std::int32_t output = 0;  ///< 1 = computed output, otherwise input
};

using CVelmItems = std::vector<std::unique_ptr<CVelmItem>>;

/// Null for a type code that is neither.
std::unique_ptr<CVelmItem> CreateItem(std::int32_t type);

}  // namespace velm
