#pragma once

#include <optional>

#include "datetime/calendar_day.h"
#include "formula/formula_context.h"
#include "model/catalog.h"
#include "model/conversion_document.h"

namespace velm {

/// Merges the document's update file into the document, writes the document and the days of its rates, and only then
/// removes the update file.
/// False, with the document unchanged, when there is no such file or it cannot be read completely. When the document
/// cannot be written it stays modified in memory and the update file stays.
bool Merge(CVelmConversionDoc& document, const CVelmCatalog& catalog, FormulaContext& context);

/// The days of an update and of the rates that it would replace.
struct CVelmOlderUpdate {
    CVelmDay update;
    CVelmDay held;
};

/// Removes the document's update file in the folder when it is older than the latest of the rates that it would
/// replace. Nothing when it is not, or does not name its day.
std::optional<CVelmOlderUpdate> RemoveOlderUpdate(CVelmConversionDoc& document, const CVelmString& folder,
                                                  const CVelmServices& services, FormulaContext& context);

/// Makes the catalog merge the update file of every conversion document that it opens. The context outlives it.
void MergeWhenOpened(CVelmCatalog& catalog, FormulaContext& context);

}  // namespace velm
