#include "model/conversion.h"

#include <algorithm>

#include "model/document.h"
#include "model/file_stream.h"

namespace velm {

std::int32_t CVelmConversion::Write(CVelmFileStream& stream) const {
    std::int32_t bytes = std::max(stream.WriteInt(formulaFlag), 0);
    bytes += std::max(stream.WriteInt(unit1->index), 0);
    bytes += std::max(stream.WriteInt(unit2->index), 0);
    if (IsFormula()) {
        bytes += stream.WriteString(forwardFormula);
        return bytes + stream.WriteString(reverseFormula);
    }
    bytes += std::max(stream.WriteDouble(factor), 0);
    return bytes + std::max(stream.WriteDouble(offset), 0);
}

std::int32_t CVelmConversion::Read(CVelmFileStream& stream) {
    std::int32_t index1 = 0;
    std::int32_t index2 = 0;
    if (!stream.ReadInt(formulaFlag) || !stream.ReadInt(index1) || !stream.ReadInt(index2)) {
        return 0;
    }
    std::int32_t bytes = 3 * static_cast<std::int32_t>(sizeof(std::int32_t));
    if (IsFormula()) {
        const std::int32_t forwardBytes = stream.ReadString(forwardFormula);
        const std::int32_t reverseBytes = forwardBytes > 0 ? stream.ReadString(reverseFormula) : 0;
        if (reverseBytes <= 0) {
            return 0;
        }
        bytes += forwardBytes + reverseBytes;
    } else {
        if (!stream.ReadDouble(factor) || !stream.ReadDouble(offset)) {
            return 0;
        }
        bytes += 2 * static_cast<std::int32_t>(sizeof(double));
    }
    // Looked up last, so that a record with a wrong index is read to its end and the next one starts right.
    unit1 = document_->ItemInFile(index1);
    unit2 = document_->ItemInFile(index2);
    return unit1 != nullptr && unit2 != nullptr ? bytes : 0;
}

CVelmString CVelmConversion::DisplayText() const {
    return unit1->name + u" <-> " + unit2->name;
}

}  // namespace velm
