#include <fmt/format.h>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "read_only_files.h"

namespace velm {

namespace {

std::string CountSummary(const CVelmDocument& document) {
    const auto* conversions = ConversionsOf(document);
    return fmt::format("ok, {} items, {} conversions", document.items.size(),
                       conversions == nullptr ? 0 : conversions->size());
}

struct Verdict {
    bool isOk;
    std::string text;
};

Verdict CheckFile(const CVelmServices& services, const CVelmString& path) {
    const DataFilePath parts = SplitDataFilePath(path);
    if (parts.kind == 0) {
        return {false, "error: does not end in .cnv or .cal"};
    }
    const std::unique_ptr<CVelmDocument> document = CreateDocument(parts.kind, services);
    if (!document->Load(parts.folder, true, parts.name)) {
        return {false, "error: " + LoadFailureText(document->lastLoad)};
    }
    if (document->droppedRecords != 0) {
        return {false, "error: " + DroppedRecordsText(*document)};
    }
    return {true, CountSummary(*document)};
}

/// A folder stands for its data files.
std::vector<CVelmString> FilesAt(CVelmFileSystem& files, const std::string& path) {
    const CVelmString whole = FromUtf8(path);
    auto found = KindOfFileName(whole) == 0 ? DataFilesIn(files, whole) : std::nullopt;
    if (!found) {
        return {whole};
    }
    for (CVelmString& name : *found) {
        name.insert(0, WithSeparator(whole));
    }
    return *std::move(found);
}

}  // namespace

int RunCheck(CommandContext& context, const std::vector<std::string>& arguments) {
    std::vector<std::string> paths;
    if (!ReadArguments(context, arguments, {{"PATH...", &paths, "Data files, and folders of them"}})) {
        return STATUS_OK;
    }
    // Otherwise loading a file in the older format would rewrite it.
    CVelmReadOnlyFiles files(context.services.files);
    const CVelmServices services{files, context.services.clock, context.services.locale};
    int status = STATUS_OK;
    for (const std::string& path : paths) {
        for (const CVelmString& file : FilesAt(files, path)) {
            const Verdict verdict = CheckFile(services, file);
            context.out.WriteLine(OneLine(fmt::format("{}: {}", ToUtf8(file), verdict.text)));
            status = verdict.isOk ? status : STATUS_FAILED;
        }
    }
    return status;
}

}  // namespace velm
