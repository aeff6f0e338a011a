#include <fmt/format.h>

#include <cstdint>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "source_import.h"

namespace velm {

int RunImport(CommandContext& context, const std::vector<std::string>& arguments) {
    std::string source;
    std::string target;
    if (!ReadArguments(context, arguments,
                       {{"SOURCE", &source, "The text form, a TOML file"},
                        {"OUT", &target, "The data file to write: .cnv for conversions, .cal for calculations"}})) {
        return STATUS_OK;
    }
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
