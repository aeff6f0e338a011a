#include <fmt/format.h>

#include <algorithm>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "model/catalog.h"
#include "platform/fetch.h"
#include "platform/system_error.h"
#include "rates_input.h"
#include "stored_options.h"
#include "update/downloader.h"
#include "update/merge.h"
#include "update/table_download.h"
#include "update/table_merge.h"
#include "update/update_file.h"

namespace velm {

namespace {

/// Where the European Central Bank publishes its rates every working day.
constexpr std::string_view RATES_ADDRESS = "https://www.ecb.europa.eu/stats/eurofxref/eurofxref-daily.xml";

/// Downloads and prints the system's own message. False when the run failed.
bool Download(const CVelmCatalog& catalog, const CVelmString& url, CVelmOutput& out) {
    const auto fetcher = CreateHttpFetcher();
    CVelmDownloader downloader(catalog, *fetcher, url);
    bool ok = false;
    {
        CVelmProgressLine line;
        ok = downloader.Run([&line](const CVelmDownloadProgress& progress) {
            line.Show(progress);
            return true;
        });
    }
    if (ok) {
        out.WriteLine(fmt::format("Updated conversion data files have been successfully downloaded ({}).",
                                  downloader.DownloadedCount()));
    } else {
        PrintError("Velmora could NOT complete downloading due to a system error: " + ToUtf8(downloader.ErrorText()));
    }
    return ok;
}

/// The documents of these files, or of every update file of the folder.
std::vector<CVelmConversionDoc*> DocumentsToUpdate(const CommandContext& context, CVelmCatalog& catalog,
                                                   const std::vector<std::string>& files) {
    std::vector<CVelmString> names;
    for (const std::string& file : files) {
        const DataFilePath path = FindDataFile(context, file);
        if (path.folder != catalog.Folder() || path.kind != KIND_CONVERSION) {
            Fail(Quoted(file) + " is not a conversion file in the data folder");
        }
        names.push_back(path.name);
    }
    if (files.empty()) {
        for (const CVelmFolderEntry& entry :
             catalog.Services().files.List(catalog.Folder()).value_or(std::vector<CVelmFolderEntry>())) {
            if (!entry.isFolder && EndsWithNoCase(entry.name, UPDATE_EXTENSION)) {
                names.push_back(entry.name.substr(0, entry.name.size() - UPDATE_EXTENSION.size()));
            }
        }
    }
    std::vector<CVelmConversionDoc*> documents;
    for (const CVelmString& name : names) {
        CVelmDocument* document = catalog.GetDocument(WithExtension(name, KIND_CONVERSION), false);
        if (document != nullptr) {
            documents.push_back(static_cast<CVelmConversionDoc*>(document));
        }
    }
    return documents;
}

/// Merges and reports the result. False when the new rates could not be written, or are older and that is not wanted.
bool MergeAndPrint(CommandContext& context, const CVelmCatalog& catalog, CVelmConversionDoc& document, TableAge age) {
    const std::string name = ToUtf8(document.FileNameWithExtension());
    if (!document.EnsureLoaded(catalog.Folder())) {
        PrintError(Quoted(name) + " " + LoadFailureText(document.lastLoad));
        return false;
    }
    if (age == TableAge::NotOlder) {
        if (const auto older = RemoveOlderUpdate(document, catalog.Folder(), context.services, context.formulas)) {
            PrintError(
                fmt::format("the update of {} is not used: its rates are of {}, older than those of {} in the data "
                            "file; --force takes them",
                            Quoted(name), ToUtf8(DayText(older->update)), ToUtf8(DayText(older->held))));
            return false;
        }
    }
    if (!Merge(document, catalog, context.formulas)) {
        context.out.WriteLine(OneLine(name + ": no new rates"));
        return true;
    }
    if (document.modified) {
        PrintError(
            fmt::format("cannot write {}: {}; its update stays in the folder", Quoted(name), ToUtf8(LastErrorText())));
        return false;
    }
    context.out.WriteLine(OneLine(fmt::format("{}: {}", name, ToUtf8(document.updatedText))));
    document.Unload({});
    return true;
}

/// Whether update files wait in the data folder.
bool HasPendingUpdate(const CVelmCatalog& catalog) {
    const auto entries = catalog.Services().files.List(catalog.Folder());
    return entries && std::ranges::any_of(*entries, [](const CVelmFolderEntry& entry) {
               return !entry.isFolder && EndsWithNoCase(entry.name, UPDATE_EXTENSION);
           });
}

/// Merges a table of rates into one data file.
int MergeRates(CommandContext& context, const std::string& source, const std::vector<std::string>& files,
               TableAge age) {
    if (files.size() > 1) {
        FailUsage("a table of rates is for one data file");
    }
    const std::string file = files.empty() ? ToUtf8(RATES_FILE) : files.front();
    const DataFilePath path = FindDataFile(context, file);
    const auto opened = OpenDataFile(context, path, file, KIND_CONVERSION);
    auto& document = static_cast<CVelmConversionDoc&>(*opened);
    const std::string table = ReadRatesInput(context, source);
    const CVelmTableMerge result = MergeTable(document, path.folder, table, age, context.services);
    if (!result.merged) {
        Fail(ToUtf8(result.errorText) + (result.isAgeProblem ? "; --force takes it" : ""));
    }
    if (document.modified) {
        FailToWrite(document.PathIn(path.folder));
    }
    // An update that waits would bring its older rates back.
    RemoveOlderUpdate(document, path.folder, context.services, context.formulas);
    for (const CVelmString& remark : RemarksOn(result)) {
        PrintError(ToUtf8(remark));
    }
    context.out.WriteLine(
        OneLine(fmt::format("{}: {}", ToUtf8(document.FileNameWithExtension()), ToUtf8(SummaryOf(result)))));
    return STATUS_OK;
}

/// Downloads update files and merges them.
int MergeUpdates(CommandContext& context, const CVelmString& url, const std::vector<std::string>& files, TableAge age) {
    FilesOfDataFolder(context);  // ends the command when there is none
    CVelmCatalog catalog(context.services);
    catalog.SetFolder(context.dataFolder);
    catalog.ScanFolder();
    DocumentsToUpdate(context, catalog, files);  // a wrong FILE ends the command before anything is fetched
    bool ok = true;
    if (url != DEFAULT_UPDATE_URL) {
        ok = Download(catalog, url, context.out);
    } else if (!HasPendingUpdate(catalog)) {
        Fail(
            "there is no server to ask yet; \"velmora update --rates\" takes new rates from a file or an address, such "
            "as " +
            std::string(RATES_ADDRESS));
    }
    for (CVelmConversionDoc* document : DocumentsToUpdate(context, catalog, files)) {
        ok = MergeAndPrint(context, catalog, *document, age) && ok;
    }
    return ok ? STATUS_OK : STATUS_FAILED;
}

}  // namespace

int RunUpdate(CommandContext& context, const std::vector<std::string>& arguments) {
    std::string url;
    std::string rates;
    bool force = false;
    std::vector<std::string> files;
    if (!ReadArguments(context, arguments,
                       {{"[FILE]...", &files, "Data files to bring up to date; without one all that rates came for"},
                        {"--rates RATES", &rates, "Table of rates: a file, - for standard input, or a web address"},
                        {"--url URL", &url, "Address of the update list (velmora options update-url)", "--rates"},
                        {"--force", &force, "Take rates that are older than those of the data file"}})) {
        return STATUS_OK;
    }
    if (!url.empty()) {
        CheckWebAddress(FromUtf8(url));
    }
    const TableAge age = force ? TableAge::Any : TableAge::NotOlder;
    const CVelmString address = url.empty() ? UpdateUrlOfOptions() : FromUtf8(url);
    if (rates.empty() && IsTableAddress(address)) {
        rates = ToUtf8(address);
    }
    return rates.empty() ? MergeUpdates(context, address, files, age) : MergeRates(context, rates, files, age);
}

}  // namespace velm
