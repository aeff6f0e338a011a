#include "model/value_entry.h"

namespace velm {

void EnterValue(CVelmDocument& document, CVelmItem& item, double value, FormulaContext& context,
                std::span<const CVelmItem* const> asked) {
    item.SetValue(value);
    document.currentItem = &item;
    document.Recalculate(context, asked);
}

bool EnterText(CVelmDocument& document, CVelmItem& item, CVelmStringView text, FormulaContext& context,
               std::span<const CVelmItem* const> asked) {
    double value = 0.0;
    if (!item.ReadTypedValue(text, context, value)) {
        return false;
    }
    EnterValue(document, item, value, context, asked);
    return true;
}

}  // namespace velm
