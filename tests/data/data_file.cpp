#include "data/data_file.h"

#include <algorithm>
#include <stdexcept>

namespace velm::test {

CVelmString DataFolder() {
    return WithSeparator(FromUtf8(VELMORA_DATA_FOLDER));
}

std::vector<CVelmString> DataFileNames(std::initializer_list<CVelmStringView> extensions) {
    std::vector<CVelmString> names;
    const auto entries = SystemFiles().List(DataFolder());
    for (const CVelmFolderEntry& entry : entries.value()) {
        if (std::any_of(extensions.begin(), extensions.end(),
                        [&](CVelmStringView extension) { return entry.name.ends_with(extension); })) {
            names.push_back(entry.name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

DataFile::DataFile(const CVelmString& name) {
    const std::int32_t kind = KindOfFileName(name);
    document_ = CreateDocument(kind, services_.Services());
    if (!document_ || !document_->Load(DataFolder(), true, name.substr(0, name.size() - 4))) {
        throw std::runtime_error("cannot load " + ToUtf8(name));
    }
}

void DataFile::ShowAll() {
    for (const auto& item : document_->items) {
        item->shown = 1;
    }
}

CVelmItem& DataFile::Item(CVelmStringView id) {
    for (const auto& item : document_->items) {
        if (item->identifier == id) {
            return *item;
        }
    }
    throw std::runtime_error(ToUtf8(document_->fileName) + " has no " + ToUtf8(id));
}

void DataFile::Enter(CVelmItem& item, double value) {
    item.value = value;
    item.state = STATE_VALID;
    document_->currentItem = &item;
    document_->Recalculate(context_);
}

}  // namespace velm::test
