#pragma once

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "formula/formula_context.h"
#include "model/conversion_document.h"
#include "support/test_services.h"

namespace velm::test {

/// The folder of the compiled data files, with a separator behind it.
inline CVelmString DataFolder() {
    return WithSeparator(FromUtf8(VELMORA_DATA_FOLDER));
}

/// Names of the data folder's files of a kind, sorted.
inline std::vector<CVelmString> DataFileNames(std::int32_t kind) {
    std::vector<CVelmString> names;
    const auto entries = SystemFiles().List(DataFolder());
    for (const CVelmFolderEntry& entry : entries.value()) {
        if (KindOfFileName(entry.name) == kind) {
            names.push_back(entry.name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// A shipped data file in memory.
class DataFile {
public:
    /// The name with extension.
    explicit DataFile(const CVelmString& name) : document_(CreateDocument(KindOfFileName(name), services_.Services())) {
        if (!document_->Load(DataFolder(), true, name.substr(0, name.size() - 4))) {
            throw std::runtime_error("cannot load " + ToUtf8(name));
        }
    }

    CVelmDocument* operator->() { return document_.get(); }
    CVelmDocument& operator*() { return *document_; }
    FormulaContext& Context() { return context_; }

    /// Makes an item the one entered and computes the others, hidden ones too.
    void Enter(CVelmItem& item, double value) {
        for (const auto& other : document_->items) {
            other->shown = 1;
        }
        item.value = value;
        item.state = STATE_VALID;
        document_->currentItem = &item;
        document_->Recalculate(context_);
    }

private:
    TestServices services_;
    FormulaContext context_{services_.clock};
    std::unique_ptr<CVelmDocument> document_;
};

}  // namespace velm::test
