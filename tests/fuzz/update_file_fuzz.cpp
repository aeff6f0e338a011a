#include "fuzz/fuzz.h"
#include "model/file_stream.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"
#include "support/test_services.h"
#include "update/downloader.h"
#include "update/merge.h"
#include "update/page_fetcher.h"
#include "update/update_file.h"

namespace velm::test {
namespace {

CVelmString PathOf(CVelmStringView name) {
    return WithSeparator(u"data") + CVelmString(name);
}

/// A run writes update files of the data folder and nothing else.
void Download(const Bytes& input) {
    MemoryFiles files;
    TestServices services(files);
    CVelmCatalog catalog(services.Services());
    catalog.SetFolder(u"data");
    PageFetcher fetcher([&](const std::string&) {
        files.Add(u"cached", input);
        return CVelmString(u"cached");
    });
    fetcher.pages["http://list"] = "the input";
    CVelmDownloader downloader(catalog, fetcher, u"http://list");
    downloader.Run();
    for (const auto& [url, requests] : fetcher.requests) {
        Require(StartsWithNoCase(FromUtf8(url), HTTP_SCHEME), "only pages of the web are fetched");
    }
    for (const auto& [path, file] : files.files) {
        const CVelmStringView name = CVelmStringView(path).substr(PathOf(u"").size());
        Require(path.starts_with(PathOf(u"")) && name.ends_with(UPDATE_EXTENSION), "an update file of the folder");
        Require(IsUsableFileName(name.substr(0, name.size() - UPDATE_EXTENSION.size())), "a name of the folder");
        Require(file->bytes == input, "stored as it came");
    }
}

/// A merged document survives saving and loading, and its rates are numbers.
void MergeInto(const Bytes& input) {
    MemoryFiles files;
    TestServices services(files);
    FormulaContext context(services.clock);
    CVelmCatalog catalog(services.Services());
    catalog.SetFolder(u"data");
    const auto document = MakeConversionDoc(services.Services(), u"Currency", {u"USD", u"EUR", u"GBP", u"usd"});
    Join(*document, 0, 1, 0.5, 3.0);
    Require(document->Save(catalog.Folder()), "saved");
    files.Add(PathOf(u"Currency.upd"), input);
    if (!Merge(*document, catalog, context)) {
        Require(!document->modified, "what is not merged is not changed");
        return;
    }
    Require(!files.Exists(PathOf(u"Currency.upd")), "a merged update is removed");
    for (const auto& conversion : document->conversions) {
        Require(conversion->factor != 0.0 && conversion->factor - conversion->factor == 0.0, "a rate is a number");
    }
    const std::string merged = Conversions(*document);
    CVelmConversionDoc again(services.Services());
    Require(again.Load(catalog.Folder(), true, u"Currency"), "loads after the merge");
    Require(Conversions(again) == merged, "the same after the merge");
}

}  // namespace

void Try(Input input) {
    const Bytes bytes(input.begin(), input.end());
    Download(bytes);
    MergeInto(bytes);
}

}  // namespace velm::test
