#pragma once

#include "model/calculation_engine.h"
#include "model/document.h"
#include "model/document_kinds.h"

namespace velm {

/// A calculation file. It has no tail, and every item is computed whether it is shown or not.
class CVelmCalculationDoc : public CVelmDocument {
public:
    using CVelmDocument::CVelmDocument;

    void Recalculate(FormulaContext& context) override { SolveCalculation(items, context); }
    std::int32_t GetKind() const override { return KIND_CALCULATION; }
    std::int32_t WriteTail(CVelmFileStream&) const override { return 0; }
    LoadStatus ReadTail(CVelmFileStream&) override { return LoadStatus::Ok; }
};

}  // namespace velm
