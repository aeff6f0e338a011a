#include "model/document_kinds.h"

#include "model/calculation_document.h"
#include "model/conversion_document.h"

namespace velm {
namespace {

template <typename Document>
std::unique_ptr<CVelmDocument> Create(const CVelmServices& services) {
    return std::make_unique<Document>(services);
}

struct Kind {
    std::int32_t code = 0;
    CVelmStringView extension;
    CVelmStringView upperExtension;
    std::unique_ptr<CVelmDocument> (*create)(const CVelmServices& services) = nullptr;
};

constexpr Kind KINDS[] = {{KIND_CONVERSION, u".cnv", u".CNV", Create<CVelmConversionDoc>},
                          {KIND_CALCULATION, u".cal", u".CAL", Create<CVelmCalculationDoc>}};

/// An empty row for an unknown code.
Kind FindKind(std::int32_t code) {
    for (const Kind& kind : KINDS) {
        if (kind.code == code) {
            return kind;
        }
    }
    return {};
}

}  // namespace

CVelmStringView ExtensionOfKind(std::int32_t kind) {
    return FindKind(kind).extension;
}

CVelmStringView UpperExtensionOfKind(std::int32_t kind) {
    return FindKind(kind).upperExtension;
}

CVelmString WithExtension(const CVelmString& name, std::int32_t kind) {
    return name + CVelmString(ExtensionOfKind(kind));
}

std::int32_t KindOfFileName(CVelmStringView fileName) {
    for (const Kind& kind : KINDS) {
        if (EndsWithNoCase(fileName, kind.extension)) {
            return kind.code;
        }
    }
    return 0;
}

std::unique_ptr<CVelmDocument> CreateDocument(std::int32_t kind, const CVelmServices& services) {
    const auto create = FindKind(kind).create;
    return create == nullptr ? nullptr : create(services);
}

}  // namespace velm
