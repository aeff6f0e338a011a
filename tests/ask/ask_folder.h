#pragma once

#include <map>
#include <memory>
#include <string>

#include "ask/questions.h"
#include "formula/formula_context.h"
#include "model/conversion_document.h"
#include "support/temporary_folder.h"
#include "support/test_services.h"

namespace velm::test {

/// A copy of the shipped data folder with rates of its own, Sunday 2026-11-22 10:00 UTC, and questions about it.
class AskFolder {
public:
    /// What one euro is worth.
    explicit AskFolder(const std::map<std::string, double>& rates = {}) {
        services_.clock.now = {2026, 11, 22, 10, 0, 0, 1};
        const CVelmString shipped = WithSeparator(FromUtf8(VELMORA_DATA_FOLDER));
        const auto entries = SystemFiles().List(shipped);
        for (const CVelmFolderEntry& entry : entries.value()) {
            const auto file = SystemFiles().Open(shipped + entry.name, FileMode::Read);
            std::string bytes;
            if (file != nullptr && ReadToEnd(*file, SIZE_MAX, bytes)) {
                folder_.WriteText(entry.name, bytes);
            }
        }
        if (!rates.empty()) {
            WriteRates(rates);
        }
        questions_ = std::make_unique<CVelmQuestions>(services_.Services(), context_, folder_.Path());
    }

    CVelmAnswer Ask(const std::string& question) { return questions_->Ask(FromUtf8(question)); }
    CVelmServices Services() { return services_.Services(); }
    FormulaContext& Context() { return context_; }
    const CVelmString& Path() const { return folder_.Path(); }
    const TemporaryFolder& Folder() const { return folder_; }
    CVelmQuestions& Questions() { return *questions_; }

private:
    void WriteRates(const std::map<std::string, double>& rates) {
        CVelmConversionDoc document(services_.Services());
        document.fileName = u"Currency";
        document.Load(folder_.Path(), true);
        for (std::size_t i = document.ItemCount(); i-- > 0;) {
            if (!rates.contains(ToUtf8(document.GetItem(i)->identifier))) {
                document.RemoveItems(i, 1);
            }
        }
        document.conversions.clear();
        const CVelmItem* euro = nullptr;
        for (const auto& item : document.items) {
            euro = item->identifier == u"EUR" ? item.get() : euro;
        }
        for (const auto& item : document.items) {
            if (item.get() != euro) {
                CVelmConversion& rate = *document.AddConversion(std::make_unique<CVelmConversion>(document));
                rate.unit1 = const_cast<CVelmItem*>(euro);
                rate.unit2 = item.get();
                rate.factor = rates.at(ToUtf8(item->identifier));
            }
        }
        document.Save(folder_.Path());
    }

    TestServices services_;
    FormulaContext context_{services_.clock};
    TemporaryFolder folder_;
    std::unique_ptr<CVelmQuestions> questions_;
};

}  // namespace velm::test
