#include <fmt/format.h>

#include <cstdint>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "model/file_replacement.h"
#include "source_import.h"
#include "source_words.h"

namespace velm {

namespace {

constexpr std::string_view WORDS_EXTENSION = ".words";

/// "Length" of "data/Length.toml".
CVelmString NameOfSource(const std::string& source) {
    const std::size_t start = source.find_last_of("/\\") + 1;
    return FromUtf8(std::string_view(source).substr(start, source.rfind('.') - start));
}

/// The words of several sources in one file. A source that is such a file already goes in as it is.
int ImportWords(CommandContext& context, const std::vector<std::string>& sources, const std::string& target) {
    std::string text;
    for (const std::string& source : sources) {
        const std::string bytes = ReadWholeFile(context.services.files, source, SIZE_MAX);
        text += text.empty() ? "" : "\n";
        text += source.ends_with(WORDS_EXTENSION)
                    ? bytes
                    : ToUtf8(UnitWordsText(WordsFromSource({source, context.formulas}, bytes, NameOfSource(source))));
    }
    if (!ReplaceFile(context.services.files, FromUtf8(target), text)) {
        FailToWrite(FromUtf8(target));
    }
    return STATUS_OK;
}

}  // namespace

int RunImport(CommandContext& context, const std::vector<std::string>& arguments) {
    std::vector<std::string> paths;
    if (!ReadArguments(context, arguments,
                       {{"SOURCE... OUT", &paths,
                         "The text form, a TOML file, and the data file to write: .cnv for conversions, .cal for "
                         "calculations; or several text forms and a .words file"}})) {
        return STATUS_OK;
    }
    if (paths.size() < 2) {
        FailUsage("import: give a source and the file to write");
    }
    const std::string target = paths.back();
    paths.pop_back();
    if (target.ends_with(WORDS_EXTENSION)) {
        return ImportWords(context, paths, target);
    }
    if (paths.size() > 1) {
        FailUsage("import: several sources make a .words file only");
    }
    const std::string& source = paths.front();
    const DataFilePath path = SplitDataFilePath(FromUtf8(target));
    if (path.kind == 0 || !FromUtf8(target).ends_with(ExtensionOfKind(path.kind))) {
        FailUsage(fmt::format("import: {} does not end in .cnv or .cal", Quoted(target)));
    }
    const SourceFile file{source, context.formulas};
    const std::string text = ReadWholeFile(context.services.files, source, SIZE_MAX);
    CVelmRateDays days;
    const std::unique_ptr<CVelmDocument> document =
        DocumentFromSource(file, ParseSource(file, text), path.kind, context.services, days);
    document->fileName = path.name;
    const auto* conversionDoc = dynamic_cast<const CVelmConversionDoc*>(document.get());
    if (!document->Save(path.folder) ||
        (conversionDoc != nullptr && !days.Write(*conversionDoc, path.folder, context.services.files))) {
        FailToWrite(FromUtf8(target));
    }
    return STATUS_OK;
}

}  // namespace velm
