#pragma once

#include "model/catalog.h"
#include "model/entry_fault.h"
#include "platform/text.h"

namespace velm {

/// What a user enters for a document.
struct CVelmFileProperties {
    CVelmString title;
    CVelmString category;
    CVelmString fileName;  ///< without extension; of a new document
};

/// Takes them over and stamps the document. A document without a file name is new and gets its own, which no other file
/// may have; another keeps its name. With a fault nothing changes.
EntryFault SetFileProperties(CVelmDocument& document, const CVelmFileProperties& properties,
                             const CVelmCatalog& catalog);

}  // namespace velm
