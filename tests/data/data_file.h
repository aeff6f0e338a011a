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

    /// The item with an identifier, in this letter case; throws when there is none.
    CVelmItem& Find(const std::string& identifier) {
        for (const auto& item : document_->items) {
            if (ToUtf8(item->identifier) == identifier) {
                return *item;
            }
        }
        throw std::runtime_error("no item " + identifier);
    }

    /// What the list shows of an item, without the blank that ends compound values.
    std::string Shown(const CVelmItem& item) const {
        const std::string text = ToUtf8(item.ValueInList(services_.locale));
        return text.substr(0, text.find_last_not_of(' ') + 1);
    }

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
