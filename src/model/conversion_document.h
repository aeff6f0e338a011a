#pragma once

#include "model/conversion.h"
#include "model/document.h"
#include "model/document_kinds.h"

namespace velm {

/// A unit conversion file.
class CVelmConversionDoc : public CVelmDocument {
public:
    using CVelmDocument::CVelmDocument;

    void RemoveItems(std::size_t first, std::size_t count) override;
    void Recalculate(FormulaContext& context) override;
    std::int32_t GetKind() const override { return KIND_CONVERSION; }
    std::int32_t WriteTail(CVelmFileStream& stream) const override;
    LoadStatus ReadTail(CVelmFileStream& stream) override;
    LoadStatus ReadOldTail(CVelmFileStream& stream) override { return ReadTail(stream); }

    /// The first conversion between the two units in either direction; null when there is none.
    CVelmConversion* FindConversion(const CVelmItem* a, const CVelmItem* b) const;
    std::int32_t CountConversions(const CVelmItem* item) const;
    CVelmConversion* AddConversion(std::unique_ptr<CVelmConversion> conversion);
    void RemoveConversion(const CVelmConversion* conversion);

    CVelmConversions conversions;
};

}  // namespace velm
