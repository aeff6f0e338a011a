#include <algorithm>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "json.h"
#include "model/catalog.h"
#include "model/reference_list.h"
#include "read_only_files.h"
#include "table.h"

namespace velm {

namespace {

using Documents = std::vector<CVelmDocument*>;

/// A view for reading: the catalog keeps its own order, whose first entry is the open document.
Documents ByCategory(const CVelmCatalog& catalog) {
    Documents sorted;
    for (const auto& document : catalog.documents) {
        sorted.push_back(document.get());
    }
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto* a, const auto* b) { return a->category < b->category; });
    return sorted;
}

std::string AsJson(const Documents& documents, const CVelmReferenceList& references) {
    CVelmJson json(true);
    json.BeginObject();
    json.BeginArray("files");
    for (const CVelmDocument* document : documents) {
        json.BeginObject();
        json.Text("name", document->FileNameWithExtension());
        json.Integer("kind", document->GetKind());
        json.Text("category", document->category);
        json.Text("title", document->title);
        json.Integer("units", document->storedItemCount);
        json.EndObject();
    }
    json.EndArray();
    json.BeginArray("references");
    for (const CVelmString& name : references.names) {
        json.Text(name);
    }
    json.EndArray();
    json.EndObject();
    return json.Result();
}

void PrintTables(const Documents& documents, const CVelmReferenceList& references, CVelmOutput& out) {
    TableRows rows;
    for (CVelmDocument* document : documents) {
        rows.push_back({ToUtf8(document->category), ToUtf8(document->FileNameWithExtension()),
                        KindWord(document->GetKind()), ToUtf8(document->title),
                        ToUtf8(CVelmCatalog::UnitCountText(*document))});
    }
    PrintTable(rows, out);
    if (references.names.empty()) {
        return;
    }
    out.WriteLine("\nText references");
    for (const CVelmString& name : references.names) {
        out.WriteLine(OneLine("  " + ToUtf8(name)));
    }
}

}  // namespace

int RunFiles(CommandContext& context, const std::vector<std::string>& arguments) {
    bool json = false;
    bool names = false;
    if (!ReadArguments(context, arguments,
                       {{"--json", &json, "Write everything as JSON"},
                        {"--names", &names, "Print the names of the data files alone, one to a line", "--json"}})) {
        return STATUS_OK;
    }
    FilesOfDataFolder(context);  // ends the command when there is none
    // Otherwise reading a header in the older format would rewrite the file.
    CVelmReadOnlyFiles files(context.services.files);
    const CVelmServices services{files, context.services.clock, context.services.locale};
    CVelmCatalog catalog(services);
    catalog.SetFolder(context.dataFolder);
    catalog.ScanFolder();
    CVelmReferenceList references(services);
    references.ScanReferences(context.dataFolder);
    if (names) {
        for (const auto& document : catalog.documents) {
            context.out.WriteLine(OneLine(ToUtf8(document->fileName)));
        }
    } else if (json) {
        context.out.WriteLine(AsJson(ByCategory(catalog), references));
    } else {
        PrintTables(ByCategory(catalog), references, context.out);
    }
    return STATUS_OK;
}

}  // namespace velm
