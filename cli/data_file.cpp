#include "data_file.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli_error.h"
#include "output.h"
#include "platform/system_error.h"
#include "suggest.h"

namespace velm {

namespace {

/// Position behind the last separator; a slash is one on every system.
std::size_t NameStart(CVelmStringView path) {
    const CVelmString separators{u'/', FolderSeparator};
    const std::size_t last = path.find_last_of(separators);
    return last == CVelmStringView::npos ? 0 : last + 1;
}

CVelmStringView WithoutExtension(CVelmStringView name) {
    return name.substr(0, name.size() - ExtensionOfKind(KindOfFileName(name)).size());
}

/// The names that match, with or without their extension.
template <typename Equal>
std::vector<CVelmString> Matching(const std::vector<CVelmString>& names, CVelmStringView wanted, Equal equal) {
    std::vector<CVelmString> matching;
    std::copy_if(names.begin(), names.end(), std::back_inserter(matching),
                 [&](const CVelmString& name) { return equal(name, wanted) || equal(WithoutExtension(name), wanted); });
    return matching;
}

CVelmString FindInDataFolder(const CommandContext& context, const std::string& file) {
    const CVelmString wanted = FromUtf8(file);
    const std::vector<CVelmString> names = FilesOfDataFolder(context);
    std::vector<CVelmString> found = Matching(names, wanted, std::equal_to<CVelmStringView>());
    if (found.empty()) {
        found = Matching(names, wanted, EqualsNoCase);
    }
    if (found.empty()) {
        std::vector<CVelmString> known;
        known.reserve(names.size());
        for (const CVelmString& name : names) {
            known.emplace_back(WithoutExtension(name));
        }
        Fail(fmt::format("there is no data file {} in {}; {}", Quoted(file), ToUtf8(context.dataFolder),
                         DidYouMean(wanted, known, 3)));
    }
    if (found.size() > 1) {
        std::vector<std::string> list(found.size());
        std::transform(found.begin(), found.end(), list.begin(), ToUtf8);
        Fail(fmt::format("{} could be {}", Quoted(file), AnyOf(list)));
    }
    return found.front();
}

}  // namespace

DataFilePath SplitDataFilePath(CVelmStringView path) {
    const std::size_t start = NameStart(path);
    const CVelmStringView name = path.substr(start);
    return {CVelmString(path.substr(0, start)), CVelmString(WithoutExtension(name)), KindOfFileName(name)};
}

std::optional<std::vector<CVelmString>> DataFilesIn(CVelmFileSystem& files, const CVelmString& folder) {
    const auto entries = files.List(folder);
    if (!entries) {
        return std::nullopt;
    }
    std::vector<CVelmString> names;
    for (const CVelmFolderEntry& entry : *entries) {
        if (!entry.isFolder && KindOfFileName(entry.name) != 0) {
            names.push_back(entry.name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<CVelmString> FilesOfDataFolder(const CommandContext& context) {
    auto names = DataFilesIn(context.services.files, context.dataFolder);
    if (!names) {
        Fail("cannot read the data folder " + Quoted(ToUtf8(context.dataFolder)));
    }
    return *std::move(names);
}

void FailToWrite(const CVelmString& path) {
    Fail(fmt::format("cannot write {}: {}", Quoted(ToUtf8(path)), ToUtf8(LastErrorText())));
}

std::string ReadWholeFile(CVelmFileSystem& files, const std::string& path, std::size_t limit) {
    const std::unique_ptr<CVelmFile> file = files.Open(FromUtf8(path), FileMode::Read);
    if (!file) {
        Fail("cannot open " + Quoted(path));
    }
    std::string bytes;
    if (!ReadToEnd(*file, limit, bytes)) {
        Fail("cannot read " + Quoted(path));
    }
    return bytes;
}

DataFilePath FindDataFile(const CommandContext& context, const std::string& file) {
    const CVelmString path = FromUtf8(file);
    const bool isDataFile = KindOfFileName(path) != 0;
    if (NameStart(path) == 0 && !(isDataFile && context.services.files.Exists(path))) {
        return SplitDataFilePath(context.dataFolder + FindInDataFolder(context, file));
    }
    if (!isDataFile) {
        Fail(file + ": does not end in .cnv or .cal");
    }
    return SplitDataFilePath(path);
}

std::unique_ptr<CVelmDocument> OpenDataFile(const CommandContext& context, const std::string& file, std::int32_t kind) {
    return OpenDataFile(context, FindDataFile(context, file), file, kind);
}

std::unique_ptr<CVelmDocument> OpenDataFile(const CommandContext& context, const DataFilePath& path,
                                            const std::string& file, std::int32_t kind) {
    if (kind != 0 && path.kind != kind) {
        const char* command = path.kind == KIND_CONVERSION ? "convert" : "calc";
        Fail(fmt::format("{} is a {} file: use velmora {}", Quoted(file), KindWord(path.kind), command));
    }
    std::unique_ptr<CVelmDocument> document = CreateDocument(path.kind, context.services);
    if (!document->Load(path.folder, true, path.name)) {
        Fail(file + ": " + LoadFailureText(document->lastLoad));
    }
    return document;
}

CVelmRateDays RateDaysOf(const CommandContext& context, const DataFilePath& path, const CVelmDocument& document) {
    const auto* conversionDoc = dynamic_cast<const CVelmConversionDoc*>(&document);
    return conversionDoc == nullptr ? CVelmRateDays()
                                    : CVelmRateDays::Read(*conversionDoc, path.folder, context.services.files);
}

bool WarnOfOldRates(const CommandContext& context, const std::optional<CVelmDay>& oldest) {
    const int age = oldest ? DaysBetween(*oldest, Today(context.services.clock)) : 0;
    if (age <= MAX_RATE_AGE) {
        return false;
    }
    PrintError(fmt::format("the rates are up to {} days old ({}); \"velmora update --rates FILE\" brings new ones", age,
                           ToUtf8(DayText(*oldest))));
    return true;
}

std::string LoadFailureText(LoadStatus status) {
    switch (status) {
        case LoadStatus::Ok:
            return "ok";
        case LoadStatus::CannotOpen:
            return "cannot be opened";
        case LoadStatus::UnknownFormat:
            return "not a data file";
        case LoadStatus::SizeMismatch:
            return "damaged: its length is not what its header says";
        case LoadStatus::Truncated:
            return "damaged: it ends too early";
        case LoadStatus::NegativeCount:
            return "damaged: it contains a negative count";
        case LoadStatus::UnknownItemType:
            return "damaged: it contains an item of an unknown type";
    }
    return "cannot be loaded";
}

std::string KindWord(std::int32_t kind) {
    return kind == KIND_CONVERSION ? "conversion" : "calculation";
}

const std::vector<std::unique_ptr<CVelmConversion>>* ConversionsOf(const CVelmDocument& document) {
    const auto* conversionDoc = dynamic_cast<const CVelmConversionDoc*>(&document);
    return conversionDoc == nullptr ? nullptr : &conversionDoc->conversions;
}

std::string DroppedRecordsText(const CVelmDocument& document) {
    const std::int64_t count = document.droppedRecords;
    return fmt::format("{} record{} cannot be read", count, count == 1 ? "" : "s");
}

}  // namespace velm
