#pragma once

#include "formula/formula_context.h"
#include "model/catalog.h"
#include "model/conversion_document.h"

namespace velm {

/// Brings the rates of the document's update file into the document, writes the document, and only then removes the
/// update file. False when there is none and when it cannot be read whole: the document is unchanged then.
/// When the document cannot be written it stays modified in memory, and the update file stays to be merged again.
bool Merge(CVelmConversionDoc& document, const CVelmCatalog& catalog, FormulaContext& context);

/// Has the catalog merge the update file of every conversion document that it opens. The context outlives it.
void MergeWhenOpened(CVelmCatalog& catalog, FormulaContext& context);

}  // namespace velm
