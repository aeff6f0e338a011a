#include "model/file_properties.h"

#include "model/file_names.h"

namespace velm {

EntryFault SetFileProperties(CVelmDocument& document, const CVelmFileProperties& properties,
                             const CVelmCatalog& catalog) {
    if (properties.title.empty()) {
        return EntryFault::TitleIsEmpty;
    }
    if (document.fileName.empty()) {
        if (!IsFileNameAllowed(properties.fileName)) {
            return EntryFault::FileNameIsNotAllowed;
        }
        if (IsFileNameTaken(catalog, document.GetKind(), properties.fileName)) {
            return EntryFault::FileNameIsTaken;
        }
        document.fileName = properties.fileName;
    }
    document.title = properties.title;
    document.category = properties.category;
    document.Touch();
    return EntryFault::None;
}

}  // namespace velm
