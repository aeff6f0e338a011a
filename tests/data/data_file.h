#pragma once

#include <memory>
#include <string>
#include <vector>

#include "formula/formula_context.h"
#include "model/document.h"
#include "support/test_services.h"

namespace velm::test {

/// The folder of the compiled data files, with a separator behind it.
CVelmString DataFolder();

/// Names of the data folder's files that end in one of the extensions, sorted.
std::vector<CVelmString> DataFileNames(std::initializer_list<CVelmStringView> extensions);

/// A shipped data file in memory, used as a user uses it. Throws where a test names what the file does not hold.
class DataFile {
public:
    /// The name with extension.
    explicit DataFile(const CVelmString& name);

    CVelmDocument& operator*() { return *document_; }
    CVelmDocument* operator->() { return document_.get(); }
    CVelmItem& Item(CVelmStringView id);

    /// Makes hidden units targets too.
    void ShowAll();

    /// Enters a value into an item and computes the others.
    void Enter(CVelmItem& item, double value);

    FormulaContext& Context() { return context_; }

private:
    TestServices services_;
    FormulaContext context_{services_.clock};
    std::unique_ptr<CVelmDocument> document_;
};

}  // namespace velm::test
