#include <fmt/format.h>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "model/file_replacement.h"
#include "source_export.h"

namespace velm {

int RunExport(CommandContext& context, const std::vector<std::string>& arguments) {
    std::string file;
    std::string target;
    if (!ReadArguments(context, arguments,
                       {{"FILE", &file, "Data file: a path or a name in the data folder"},
                        {"-o SOURCE", &target, "The TOML file to write, instead of standard output"}})) {
        return STATUS_OK;
    }
    const DataFilePath path = FindDataFile(context, file);
    const std::unique_ptr<CVelmDocument> document = OpenDataFile(context, path, file);
    if (document->droppedRecords != 0) {
        Fail(fmt::format("{}: damaged: {}", file, DroppedRecordsText(*document)));
    }
    const std::string source = SourceFromDocument(*document, RateDaysOf(context, path, *document));
    if (target.empty()) {
        context.out.Write(source);
        return STATUS_OK;
    }
    if (!ReplaceFile(context.services.files, FromUtf8(target), source)) {
        FailToWrite(FromUtf8(target));
    }
    return STATUS_OK;
}

}  // namespace velm
