#include "export_command.h"

#include <fmt/format.h>

#include "arguments.h"
#include "cli_error.h"
#include "data_file.h"
#include "model/file_replacement.h"
#include "source_export.h"

namespace velm {

int RunExport(CommandContext& context, const std::vector<std::string>& arguments) {
    std::string file;
    std::string target;
    CVelmArguments declared(context.command);
    declared.AddPositional("FILE", file, "Data file: a path or a name in the data folder");
    declared.AddOption("-o", target, "SOURCE", "The TOML file to write, instead of standard output");
    if (!declared.Parse(arguments, context.out)) {
        return STATUS_OK;
    }
    const std::unique_ptr<CVelmDocument> document = OpenDataFile(context, file);
    if (document->DroppedRecords() != 0) {
        Fail(fmt::format("{}: damaged: {}", file, DroppedRecordsText(*document)));
    }
    const std::string source = SourceFromDocument(*document);
    if (target.empty()) {
        context.out.Write(source);
        return STATUS_OK;
    }
    if (!ReplaceFile(context.services, FromUtf8(target), source)) {
        FailToWrite(FromUtf8(target));
    }
    return STATUS_OK;
}

}  // namespace velm
