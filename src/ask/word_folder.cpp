#include "ask/word_folder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "ask/index_builder.h"
#include "ask/unit_words.h"
#include "model/document_kinds.h"
#include "model/file_replacement.h"

namespace velm {

namespace {

constexpr std::size_t WORDS_MAX_BYTES = 16 << 20;
constexpr std::size_t CACHE_MAX_BYTES = 256 << 20;

/// Tells the caches of several folders apart.
CVelmString FolderHash(CVelmStringView folder) {
    std::uint64_t hash = 0xCBF2'9CE4'8422'2325;
    for (const char16_t unit : folder) {
        hash = (hash ^ unit) * 0x100'0000'01B3;
    }
    CVelmString text;
    for (int shift = 60; shift >= 0; shift -= 4) {
        text += u"0123456789abcdef"[hash >> shift & 15];
    }
    return text;
}

void ReadWordsFile(CVelmFileSystem& files, const CVelmString& path, CVelmUnitWords& words) {
    const auto file = files.Open(path, FileMode::Read);
    std::string bytes;
    if (file == nullptr || !ReadToEnd(*file, WORDS_MAX_BYTES, bytes)) {
        return;
    }
    const std::string_view text = bytes;
    ReadUnitWords(FromUtf8(text.starts_with(UTF8_MARK) ? text.substr(UTF8_MARK.size()) : text), words);
}

}  // namespace

CVelmWordFolder::CVelmWordFolder(const CVelmServices& services, FormulaContext& context, CVelmString folder,
                                 CVelmString cacheFolder)
    : services_(services), context_(context), folder_(std::move(folder)), cacheFolder_(std::move(cacheFolder)) {}

IndexStamp CVelmWordFolder::StampOf(CVelmStringView name) const {
    const auto stamp = services_.files.Stamp(folder_ + CVelmString(name));
    return stamp ? IndexStamp{stamp->size, stamp->lastWrite} : IndexStamp();
}

CVelmWordFolder::Stamps CVelmWordFolder::CurrentStamps() const {
    const auto folder = services_.files.Stamp(folder_);
    return {folder ? folder->lastWrite : 0, StampOf(UNIT_WORDS_FILE), StampOf(OWN_WORDS_FILE)};
}

const CVelmUnitIndex& CVelmWordFolder::Index() {
    if (!hasIndex_) {
        hasIndex_ = ReadCache();
    }
    if (!hasIndex_ || stamps_ != CurrentStamps()) {
        Refresh();
    }
    return index_;
}

bool CVelmWordFolder::Refresh() {
    const Stamps stamps = CurrentStamps();
    const std::vector<CVelmString> names = DataFiles();
    const bool isSame =
        hasIndex_ && stamps.words == stamps_.words && stamps.ownWords == stamps_.ownWords && Matches(names);
    const bool isNewStamp = stamps_ != stamps;
    stamps_ = stamps;
    if (!isSame) {
        Build(names);
    }
    if (!isSame || isNewStamp) {
        WriteCache();
    }
    return !isSame;
}

CVelmDocument* CVelmWordFolder::Document(std::uint32_t file, bool& isStale) {
    const CVelmString name(index_.Text(index_.files[file].name));
    if (index_.files[file].stamp != StampOf(name)) {
        isStale = Refresh();
        return nullptr;
    }
    documents_.resize(index_.files.size());
    if (documents_[file] == nullptr) {
        const std::int32_t kind = index_.files[file].kind;
        auto document = CreateDocument(kind, services_);
        if (!document->Load(folder_, true, name.substr(0, name.size() - ExtensionOfKind(kind).size()))) {
            return nullptr;
        }
        documents_[file] = std::move(document);
    }
    return documents_[file].get();
}

std::vector<CVelmString> CVelmWordFolder::DataFiles() const {
    std::vector<CVelmString> names;
    const auto entries = services_.files.List(folder_);
    for (const CVelmFolderEntry& entry : entries ? *entries : std::vector<CVelmFolderEntry>()) {
        if (!entry.isFolder && KindOfFileName(entry.name) != 0) {
            names.push_back(entry.name);
        }
    }
    return names;
}

bool CVelmWordFolder::Matches(const std::vector<CVelmString>& names) const {
    return std::ranges::equal(names, index_.files, [this](const CVelmString& name, const IndexFile& file) {
        return name == index_.Text(file.name) && file.stamp == StampOf(name);
    });
}

void CVelmWordFolder::Build(const std::vector<CVelmString>& names) {
    CVelmUnitWords words;
    ReadWordsFile(services_.files, folder_ + CVelmString(UNIT_WORDS_FILE), words);
    ReadWordsFile(services_.files, folder_ + CVelmString(OWN_WORDS_FILE), words);
    CVelmIndexBuilder builder(words, context_);
    for (const CVelmString& name : names) {
        const std::int32_t kind = KindOfFileName(name);
        const auto document = CreateDocument(kind, services_);
        const IndexStamp stamp = StampOf(name);
        document->Load(folder_, true, name.substr(0, name.size() - ExtensionOfKind(kind).size()));
        builder.Add(*document, name, stamp);
    }
    index_ = builder.Finish();
    documents_.clear();
    hasIndex_ = true;
}

CVelmString CVelmWordFolder::CachePath() const {
    return cacheFolder_.empty() ? CVelmString() : WithSeparator(cacheFolder_) + FolderHash(folder_) + u".words";
}

bool CVelmWordFolder::ReadCache() {
    const auto file = cacheFolder_.empty() ? nullptr : services_.files.Open(CachePath(), FileMode::Read);
    const auto size = file == nullptr ? std::nullopt : file->Size();
    if (!size || *size < sizeof(stamps_) || *size > CACHE_MAX_BYTES || *size % sizeof(std::uint64_t) != 0) {
        return false;
    }
    const std::size_t length = static_cast<std::size_t>(*size) - sizeof(stamps_);
    IndexBlock block(length / sizeof(std::uint64_t));
    return file->Read(&stamps_, sizeof(stamps_)) == static_cast<std::int64_t>(sizeof(stamps_)) &&
           file->Read(block.words.get(), length) == static_cast<std::int64_t>(length) &&
           index_.TakeBytes(std::move(block));
}

void CVelmWordFolder::WriteCache() const {
    if (cacheFolder_.empty() || !services_.files.CreateFolder(cacheFolder_)) {
        return;
    }
    static_assert(sizeof(stamps_) % sizeof(std::uint64_t) == 0);
    std::string bytes(sizeof(stamps_), '\0');
    std::memcpy(bytes.data(), &stamps_, sizeof(stamps_));
    const std::span<const std::uint64_t> words = index_.Bytes().Span();
    bytes.append(reinterpret_cast<const char*>(words.data()), words.size_bytes());
    // A cache that cannot be written costs time and nothing else.
    [[maybe_unused]] const bool ignored = ReplaceFile(services_.files, CachePath(), bytes);
}

}  // namespace velm
