#include "model/document.h"

#include <algorithm>
#include <utility>

#include "datetime/date_time.h"
#include "formats/date_format.h"
#include "model/document_kinds.h"

namespace velm {

CVelmDocument::CVelmDocument(const CVelmServices& services)
    : updatedTime(DateTime::Now(services.clock).value), services_(services), file_(*this, services) {
    updatedText = FormatDate(updatedTime, true, services_.locale);
}

void CVelmDocument::RemoveItems(std::size_t first, std::size_t count) {
    first = std::min(first, items.size());
    const auto begin = items.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = begin + static_cast<std::ptrdiff_t>(std::min(count, items.size() - first));
    if (std::any_of(begin, end, [this](const auto& item) { return item.get() == currentItem; })) {
        currentItem = nullptr;
    }
    modified = modified || begin != end;
    items.erase(begin, end);
}

bool CVelmDocument::Load(const CVelmString& folder, bool full, const CVelmString& newFileName) {
    if (!newFileName.empty()) {
        fileName = newFileName;
    }
    return file_.Load(folder, full);
}

bool CVelmDocument::EnsureLoaded(const CVelmString& folder) {
    return loaded || Load(folder, true);
}

void CVelmDocument::Touch(const CVelmString& text) {
    updatedText =
        text.empty() ? FormatDate(DateTime::Now(services_.clock).value, true, services_.locale) : CVelmString(text);
    modified = true;
}

CVelmItem* CVelmDocument::AddItem(std::unique_ptr<CVelmItem> item) {
    modified = true;
    items.push_back(std::move(item));
    return items.back().get();
}

void CVelmDocument::RemoveItem(const CVelmItem* item) {
    const auto found =
        std::find_if(items.begin(), items.end(), [item](const auto& candidate) { return candidate.get() == item; });
    if (found != items.end()) {
        RemoveItems(static_cast<std::size_t>(found - items.begin()), 1);
    }
}

CVelmString CVelmDocument::FileNameWithExtension() const {
    return WithExtension(fileName, GetKind());
}

}  // namespace velm
