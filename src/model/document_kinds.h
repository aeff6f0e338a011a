#pragma once

#include <cstdint>
#include <memory>

#include "platform/services.h"
#include "platform/text.h"

namespace velm {

class CVelmDocument;

/// Kinds of document.
constexpr std::int32_t KIND_CONVERSION = 1;
constexpr std::int32_t KIND_CALCULATION = 2;

/// ".cnv" or ".cal"; in capitals, as other systems write it.
CVelmStringView ExtensionOfKind(std::int32_t kind);
CVelmStringView UpperExtensionOfKind(std::int32_t kind);

/// A name with the extension of a kind appended.
CVelmString WithExtension(const CVelmString& name, std::int32_t kind);

/// The kind whose extension the file name ends with, in any letter case; 0 for any other name.
std::int32_t KindOfFileName(CVelmStringView fileName);

/// An empty document; null for a kind that is neither.
std::unique_ptr<CVelmDocument> CreateDocument(std::int32_t kind, const CVelmServices& services);

}  // namespace velm
