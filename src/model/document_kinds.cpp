#include "model/document_kinds.h"

#include "model/calculation_document.h"
#include "model/conversion_document.h"

namespace velm {

CVelmStringView ExtensionOfKind(std::int32_t kind) {
    return kind == KIND_CONVERSION ? u".cnv" : kind == KIND_CALCULATION ? u".cal" : u"";
}

CVelmStringView UpperExtensionOfKind(std::int32_t kind) {
    return kind == KIND_CONVERSION ? u".CNV" : kind == KIND_CALCULATION ? u".CAL" : u"";
}

CVelmString WithExtension(const CVelmString& name, std::int32_t kind) {
    return name + CVelmString(ExtensionOfKind(kind));
}

std::int32_t KindOfFileName(CVelmStringView fileName) {
    for (const std::int32_t kind : {KIND_CONVERSION, KIND_CALCULATION}) {
        if (EndsWithNoCase(fileName, ExtensionOfKind(kind))) {
            return kind;
        }
    }
    return 0;
}

std::unique_ptr<CVelmDocument> CreateDocument(std::int32_t kind, const CVelmServices& services) {
    if (kind == KIND_CONVERSION) {
        return std::make_unique<CVelmConversionDoc>(services);
    }
    if (kind == KIND_CALCULATION) {
        return std::make_unique<CVelmCalculationDoc>(services);
    }
    return nullptr;
}

}  // namespace velm
