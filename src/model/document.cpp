#include "model/document.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "datetime/date_time.h"
#include "formats/date_format.h"
#include "model/file_format.h"
#include "model/file_replacement.h"
#include "model/file_stream.h"
#include "model/folder_names.h"

namespace velm {

namespace {

struct KindName {
    std::int32_t kind;
    CVelmStringView extension;
    CVelmStringView upperExtension;
};

constexpr KindName KINDS[] = {{KIND_CONVERSION, u".cnv", u".CNV"}, {KIND_CALCULATION, u".cal", u".CAL"}};

const KindName* FindKind(std::int32_t kind) {
    const auto* const found = std::find_if(std::begin(KINDS), std::end(KINDS),
                                           [kind](const KindName& candidate) { return candidate.kind == kind; });
    return found == std::end(KINDS) ? nullptr : found;
}

CVelmString InFolder(const CVelmString& folder, const CVelmString& name) {
    return folder.empty() ? name : WithSeparator(folder) + name;
}

}  // namespace

CVelmStringView ExtensionOfKind(std::int32_t kind) {
    const KindName* found = FindKind(kind);
    return found == nullptr ? CVelmStringView() : found->extension;
}

CVelmString WithExtension(const CVelmString& name, std::int32_t kind) {
    return name + CVelmString(ExtensionOfKind(kind));
}

std::int32_t KindOfFileName(CVelmStringView fileName) {
    for (const KindName& candidate : KINDS) {
        if (EndsWithNoCase(fileName, candidate.extension)) {
            return candidate.kind;
        }
    }
    return 0;
}

CVelmDocument::CVelmDocument(const CVelmServices& services)
    : updatedTime(DateTime::Now(services.clock).value), services_(services) {
    updatedText = FormatDate(updatedTime, true, services_.locale);
}

void CVelmDocument::RemoveItems(std::size_t first, std::size_t count) {
    first = std::min(first, items.size());
    const auto begin = items.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = begin + static_cast<std::ptrdiff_t>(std::min(count, items.size() - first));
    if (std::any_of(begin, end, [this](const auto& item) { return item.get() == currentItem; })) {
        currentItem = nullptr;
    }
    modified_ = modified_ || begin != end;
    items.erase(begin, end);
}

LoadStatus CVelmDocument::ReadOldTail(CVelmFileStream&) {
    return LoadStatus::Ok;
}

bool CVelmDocument::Load(const CVelmString& folder, bool full, const CVelmString& newFileName) {
    if (!newFileName.empty()) {
        fileName = newFileName;
    }
    RemoveItems(0, items.size());
    loaded = false;
    originalToKeep_.clear();
    droppedRecords_ = 0;
    bool isOlder = false;
    lastLoad_ = ReadFile(folder, full, isOlder);
    itemsInFile_ = std::vector<CVelmItem*>();
    loaded = lastLoad_ == LoadStatus::Ok && (full || isOlder);
    if (!loaded) {
        RemoveItems(0, items.size());
    }
    modified_ = false;
    if (loaded && isOlder) {
        Upgrade(folder, full);
    }
    return lastLoad_ == LoadStatus::Ok;
}

void CVelmDocument::Upgrade(const CVelmString& folder, bool keepItems) {
    Save(folder);  // where the folder cannot be written the file stays as it is, and is still readable
    if (!keepItems) {
        Unload({});
    }
}

LoadStatus CVelmDocument::ReadFile(const CVelmString& folder, bool full, bool& isOlder) {
    CVelmFileStream stream(services_.files, services_.clock);
    if (!OpenOnDisk(stream, folder)) {
        return LoadStatus::CannotOpen;
    }
    CVelmFileHeader header;
    if (const LoadStatus status = ReadHeader(stream, header); status != LoadStatus::Ok) {
        return status;
    }
    isOlder = header.isOlder;
    // A file in the older format is rewritten whole, so all of it is read.
    if (full || header.isOlder) {
        if (const LoadStatus status = ReadContent(stream, header); status != LoadStatus::Ok) {
            return status;
        }
        if (header.isOlder || droppedRecords_ > 0 || stream.Remaining() > 0) {
            originalToKeep_ = PathIn(folder);
        }
    }
    TakeHeader(header);
    updatedInFile_ = updatedText;
    return LoadStatus::Ok;
}

LoadStatus CVelmDocument::ReadContent(CVelmFileStream& stream, const CVelmFileHeader& header) {
    CVelmFileItems read;
    if (const LoadStatus status = ReadItems(stream, header, read); status != LoadStatus::Ok) {
        return status;
    }
    for (std::unique_ptr<CVelmItem>& item : read) {
        itemsInFile_.push_back(item.get());
        if (item == nullptr) {
            DropRecords(1);
            continue;
        }
        item->index = static_cast<std::int32_t>(items.size());
        items.push_back(std::move(item));
    }
    return header.isOlder ? ReadOldTail(stream) : ReadTail(stream);
}

void CVelmDocument::DropRecords(std::int32_t count) {
    droppedRecords_ += std::min(count, std::numeric_limits<std::int32_t>::max() - droppedRecords_);
}

void CVelmDocument::TakeHeader(CVelmFileHeader& header) {
    if (!header.isOlder) {
        updatedText = std::move(header.updatedText);
        category = std::move(header.category);
    }
    title = std::move(header.title);
    storedItemCount = header.itemCount;
    if (header.time) {
        updatedTime = DateTime::FromSystemTime(*header.time).value;
    }
}

bool CVelmDocument::OpenOnDisk(CVelmFileStream& stream, const CVelmString& folder) {
    nameOnDisk_.clear();
    if (stream.OpenRead(PathIn(folder))) {
        return true;
    }
    // Letter case does not matter in the names of data files, also where it does to the file system.
    nameOnDisk_ = fileName + CVelmString(FindKind(GetKind())->upperExtension);
    if (stream.OpenRead(PathIn(folder))) {
        return true;
    }
    nameOnDisk_ = FindInFolder(services_.files, InFolder(folder, {}), FileNameWithExtension()).value_or(CVelmString());
    return !nameOnDisk_.empty() && stream.OpenRead(PathIn(folder));
}

bool CVelmDocument::EnsureLoaded(const CVelmString& folder) {
    return loaded || Load(folder, true);
}

bool CVelmDocument::Unload(const CVelmString& folder) {
    if (!loaded) {
        return true;
    }
    // Looking costs a fraction of writing, and spares the memory card of a handheld. How rows show their values is no
    // reason to write old rates over the ones that another program has fetched meanwhile.
    const bool stays = folder.empty() || IsAsInFile(folder) || (!modified_ && IsReplacedInFile(folder));
    if (!stays && !Save(folder) && modified_) {
        return false;
    }
    storedItemCount = static_cast<std::int32_t>(items.size());
    loaded = false;
    RemoveItems(0, items.size());
    modified_ = false;
    return true;
}

void CVelmDocument::NumberItems() {
    std::int32_t position = 0;
    for (const auto& item : items) {
        item->index = position++;
    }
}

bool CVelmDocument::IsAsInFile(const CVelmString& folder) {
    NumberItems();
    return HoldsAlready(services_, PathIn(folder),
                        [this](CVelmFileStream& stream) { return WriteDocument(stream, *this); });
}

bool CVelmDocument::IsReplacedInFile(const CVelmString& folder) const {
    CVelmFileStream stream(services_.files, services_.clock);
    CVelmFileHeader header;
    return updatedInFile_ && stream.OpenRead(PathIn(folder)) && ReadHeader(stream, header) == LoadStatus::Ok &&
           header.updatedText != *updatedInFile_;
}

bool CVelmDocument::Save(const CVelmString& folder) {
    if (!loaded) {
        return false;  // the items are in the file only
    }
    NumberItems();
    const CVelmString path = PathIn(folder);
    if (!originalToKeep_.empty() && !KeepOriginal(services_, path)) {
        return false;
    }
    if (!ReplaceFile(services_, path, [this](CVelmFileStream& stream) { return WriteDocument(stream, *this); })) {
        return false;
    }
    if (path == originalToKeep_) {
        originalToKeep_.clear();
    }
    updatedInFile_ = updatedText;
    modified_ = false;
    return true;
}

void CVelmDocument::Touch(const CVelmString& text) {
    updatedText =
        text.empty() ? FormatDate(DateTime::Now(services_.clock).value, true, services_.locale) : CVelmString(text);
    modified_ = true;
}

CVelmItem* CVelmDocument::AddItem(std::unique_ptr<CVelmItem> item) {
    modified_ = true;
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

CVelmItem* CVelmDocument::ItemInFile(std::int32_t index) const {
    const auto position = static_cast<std::size_t>(index);
    return index >= 0 && position < itemsInFile_.size() ? itemsInFile_[position] : nullptr;
}

CVelmString CVelmDocument::FileNameWithExtension() const {
    return WithExtension(fileName, GetKind());
}

CVelmString CVelmDocument::PathIn(const CVelmString& folder) const {
    const CVelmString name = FileNameWithExtension();
    return InFolder(folder, EqualsNoCase(name, nameOnDisk_) ? nameOnDisk_ : name);
}

std::unique_ptr<CVelmDocument> CreateDocument(std::int32_t kind, const CVelmServices& services) {
    switch (kind) {
        case KIND_CONVERSION:
            return std::make_unique<CVelmConversionDoc>(services);
        case KIND_CALCULATION:
            return std::make_unique<CVelmCalculationDoc>(services);
        default:
            return nullptr;
    }
}

}  // namespace velm
