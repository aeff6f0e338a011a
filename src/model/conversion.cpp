#include "model/conversion.h"

#include "model/document.h"
#include "model/record_stream.h"

namespace velm {

std::int32_t CVelmConversion::Write(CVelmFileStream& stream) const {
    CVelmRecordWriter record(stream);
    record.Int(formulaFlag);
    record.Int(unit1->index);
    record.Int(unit2->index);
    if (IsFormula()) {
        record.String(forwardFormula);
        record.String(reverseFormula);
    } else {
        record.Double(factor);
        record.Double(offset);
    }
    return record.Bytes();
}

std::int32_t CVelmConversion::Read(CVelmFileStream& stream) {
    std::int32_t index1 = 0;
    std::int32_t index2 = 0;
    CVelmRecordReader record(stream);
    if (!record.Int(formulaFlag) || !record.Int(index1) || !record.Int(index2)) {
        return 0;
    }
    const bool whole = IsFormula() ? record.String(forwardFormula) && record.String(reverseFormula)
                                   : record.Double(factor) && record.Double(offset);
    if (!whole) {
        return 0;
    }
    // Looked up last, so that a record with a wrong index is read to its end and the next one starts right.
    unit1 = document_->ItemInFile(index1);
    unit2 = document_->ItemInFile(index2);
    return unit1 != nullptr && unit2 != nullptr ? record.Bytes() : 0;
}

CVelmString CVelmConversion::DisplayText() const {
    return unit1->name + u" <-> " + unit2->name;
}

}  // namespace velm
