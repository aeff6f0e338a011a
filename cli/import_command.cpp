#include "import_command.h"

#include <fmt/format.h>

#include "arguments.h"
#include "cli_error.h"
#include "data_file.h"
#include "source_import.h"

namespace velm {

namespace {

std::string ReadWholeFile(CVelmFileSystem& files, const std::string& path) {
    const std::unique_ptr<CVelmFile> file = files.Open(FromUtf8(path), FileMode::Read);
    if (!file) {
        Fail("cannot open " + Quoted(path));
    }
    std::string content;
    std::string chunk(1 << 16, '\0');
    for (;;) {
        const std::int64_t got = file->Read(chunk.data(), chunk.size());
        if (got < 0) {
            Fail("cannot read " + Quoted(path));
        }
        if (got == 0) {
            return content;
        }
        content.append(chunk, 0, static_cast<std::size_t>(got));
    }
}

}  // namespace

int RunImport(CommandContext& context, const std::vector<std::string>& arguments) {
    std::string source;
    std::string target;
    CVelmArguments declared("import", "Make a data file of its text form");
    declared.AddPositional("SOURCE", source, "The text form, a TOML file");
    declared.AddPositional("OUT", target, "The data file to write: .cnv for conversions, .cal for calculations");
    if (!declared.Parse(arguments, context.out)) {
        return STATUS_OK;
    }
    const DataFilePath path = SplitDataFilePath(FromUtf8(target));
    if (path.kind == 0 || !FromUtf8(target).ends_with(ExtensionOfKind(path.kind))) {
        FailUsage(fmt::format("import: {} does not end in .cnv or .cal", Quoted(target)));
    }
    const SourceFile file{source, context.formulas};
    const std::string text = ReadWholeFile(context.services.files, source);
    const std::unique_ptr<CVelmDocument> document = DocumentFromSource(file, text, path.kind, context.services);
    document->fileName = path.name;
    if (!document->Save(path.folder)) {
        Fail("cannot write " + Quoted(target));
    }
    return STATUS_OK;
}

}  // namespace velm
