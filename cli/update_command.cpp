#include <fmt/format.h>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "model/catalog.h"
#include "platform/fetch.h"
#include "platform/system_error.h"
#include "platform/terminal.h"
#include "stored_options.h"
#include "update/downloader.h"
#include "update/merge.h"
#include "update/update_file.h"

namespace velm {

namespace {

/// A progress line that is overwritten on a terminal; nothing elsewhere.
class CVelmProgressLine {
public:
    CVelmProgressLine() : visible_(StandardErrorIsTerminal()) {}
    ~CVelmProgressLine() { Show(""); }
    CVelmProgressLine(const CVelmProgressLine&) = delete;
    CVelmProgressLine& operator=(const CVelmProgressLine&) = delete;

    void Show(const CVelmDownloadProgress& progress) {
        Show(fmt::format("Downloading {} of {}, {} bytes", progress.file, progress.fileCount, progress.bytes));
    }

private:
    void Show(const std::string& text) {
        if (visible_ && text != shown_) {
            WriteStandardError(fmt::format("\r{:<{}}\r{}", "", shown_.size(), text));
            shown_ = text;
        }
    }

    bool visible_;
    std::string shown_;
};

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

/// Merges and reports the result. False when the new rates could not be written.
bool MergeAndPrint(CommandContext& context, const CVelmCatalog& catalog, CVelmConversionDoc& document) {
    const std::string name = ToUtf8(document.FileNameWithExtension());
    if (!document.EnsureLoaded(catalog.Folder())) {
        PrintError(Quoted(name) + " " + LoadFailureText(document.lastLoad));
        return false;
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

}  // namespace

int RunUpdate(CommandContext& context, const std::vector<std::string>& arguments) {
    std::string url;
    std::vector<std::string> files;
    if (!ReadArguments(context, arguments,
                       {{"[FILE]...", &files, "Data files to bring up to date; without one all that rates came for"},
                        {"--url URL", &url, "Address of the update list (velmora options update-url)"}})) {
        return STATUS_OK;
    }
    if (!url.empty()) {
        CheckHttp(FromUtf8(url));
    }
    FilesOfDataFolder(context);  // ends the command when there is none
    CVelmCatalog catalog(context.services);
    catalog.SetFolder(context.dataFolder);
    catalog.ScanFolder();
    DocumentsToUpdate(context, catalog, files);  // a wrong FILE ends the command before anything is fetched
    bool ok = Download(catalog, url.empty() ? UpdateUrlOfOptions() : FromUtf8(url), context.out);
    for (CVelmConversionDoc* document : DocumentsToUpdate(context, catalog, files)) {
        ok = MergeAndPrint(context, catalog, *document) && ok;
    }
    return ok ? STATUS_OK : STATUS_FAILED;
}

}  // namespace velm
