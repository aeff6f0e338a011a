#include "model/catalog.h"

#include <algorithm>
#include <unordered_set>

namespace velm {

void CVelmCatalog::SetFolder(const CVelmString& path) {
    folder_ = WithSeparator(path);
}

int CVelmCatalog::AddFile(const CVelmString& name) {
    const int known = FindDocument(name);
    return known >= 0 ? known : AddNewFile(name);
}

int CVelmCatalog::AddNewFile(const CVelmString& name) {
    const std::int32_t kind = KindOfFileName(name);
    const std::size_t extension = ExtensionOfKind(kind).size();
    // A bare extension is not a data file.
    if (kind == 0 || name.size() == extension) {
        return -1;
    }
    auto document = CreateDocument(kind, services_);
    const bool read = document->Load(folder_, false, name.substr(0, name.size() - extension));
    return read ? AddDocument(std::move(document)) : -1;
}

void CVelmCatalog::AddFiles(CVelmStringView list) {
    while (!list.empty() && list.front() != 0) {
        const CVelmStringView name = list.substr(0, list.find(u'\0'));
        AddFile(CVelmString(name));
        list.remove_prefix(std::min(name.size() + 1, list.size()));
    }
}

void CVelmCatalog::ScanFolder() {
    const auto entries = services_.files.List(folder_);
    if (!entries) {
        return;
    }
    std::unordered_set<CVelmString> known;
    for (const auto& document : documents) {
        known.insert(FoldCase(document->FileNameWithExtension()));
    }
    for (const CVelmFolderEntry& entry : *entries) {
        if (entry.isFolder || KindOfFileName(entry.name) == 0) {
            continue;
        }
        CVelmString folded = FoldCase(entry.name);
        if (!known.contains(folded) && AddNewFile(entry.name) >= 0) {
            known.insert(std::move(folded));
        }
    }
}

int CVelmCatalog::FindDocument(CVelmStringView name) const {
    const auto found = std::find_if(documents.begin(), documents.end(), [&](const auto& document) {
        return EqualsNoCase(document->FileNameWithExtension(), name);
    });
    return found == documents.end() ? -1 : static_cast<int>(found - documents.begin());
}

CVelmDocument* CVelmCatalog::GetDocument(CVelmStringView name, bool activate) {
    const int index = FindDocument(name);
    if (index < 0) {
        return nullptr;
    }
    return activate ? Activate(index) : documents[static_cast<std::size_t>(index)].get();
}

CVelmDocument* CVelmCatalog::Activate(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= documents.size()) {
        return nullptr;
    }
    CVelmDocument* open = documents.front().get();
    if (index == 0) {
        // No merge here, deliberately: the document that is open already is neither saved nor changed.
        open->EnsureLoaded(folder_);
        return open;
    }
    if (!open->Unload(folder_)) {
        return open;
    }
    std::rotate(documents.begin(), documents.begin() + index, documents.begin() + index + 1);
    open = documents.front().get();
    if (open->EnsureLoaded(folder_) && open->GetKind() == KIND_CONVERSION && mergePending_) {
        mergePending_(static_cast<CVelmConversionDoc&>(*open), *this);
    }
    return open;
}

int CVelmCatalog::AddDocument(std::unique_ptr<CVelmDocument> document) {
    documents.push_back(std::move(document));
    return static_cast<int>(documents.size()) - 1;
}

CVelmString CVelmCatalog::UnitCountText(CVelmDocument& document) {
    if (document.loaded) {
        document.storedItemCount = static_cast<std::int32_t>(document.ItemCount());
    }
    return IntegerText(document.storedItemCount) + u" units";
}

}  // namespace velm
