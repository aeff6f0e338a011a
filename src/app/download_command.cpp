#include <memory>
#include <string>

#include "app/commands.h"
#include "app/main_frame.h"
#include "platform/fetch.h"
#include "platform/scope_exit.h"
#include "platform/wide_text_win32.h"
#include "settings/settings.h"
#include "ui/wait_cursor.h"
#include "update/downloader.h"
#include "update/merge.h"
#include "update/table_download.h"
#include "update/table_merge.h"

namespace velm {
namespace {

constexpr UINT FIRST_FRAME_MOUSE = WM_NCMOUSEMOVE;
constexpr UINT LAST_FRAME_MOUSE = WM_NCXBUTTONDBLCLK;

/// Turns Alt+F4 and a tap on the close button into a WM_CLOSE, as normal processing would.
void KeepCloseRequest(const MSG& message) {
    if ((message.message == WM_SYSKEYDOWN && message.wParam == VK_F4) ||
        (message.message == WM_NCLBUTTONDOWN && message.wParam == HTCLOSE)) {
        PostMessageW(GetAncestor(message.hwnd, GA_ROOT), WM_CLOSE, 0, 0);
    }
}

/// True if the user wants to stop. Discards other keys and taps, so that none takes effect late. Closing the window
/// stops too; its message stays in the queue.
bool IsStopRequested() {
    MSG message{};
    bool stop = false;
    while (PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE)) {
        stop = stop || (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE);
        KeepCloseRequest(message);
    }
    while (PeekMessageW(&message, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE) ||
           PeekMessageW(&message, nullptr, FIRST_FRAME_MOUSE, LAST_FRAME_MOUSE, PM_REMOVE)) {
        KeepCloseRequest(message);
    }
    return stop || PeekMessageW(&message, nullptr, WM_CLOSE, WM_CLOSE, PM_NOREMOVE) != FALSE;
}

void Repaint() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}

/// Shows how far a download is; false when the user stops it.
bool OnProgress(CVelmFrame& frame, const CVelmDownloadProgress& progress) {
    frame.ShowTitle(u"Downloading " + IntegerText(static_cast<std::int64_t>(progress.file)) + u" of " +
                    IntegerText(static_cast<std::int64_t>(progress.fileCount)));
    const bool stop = IsStopRequested();
    Repaint();
    return !stop;
}

/// Runs a download, given its observer, with the wait cursor.
template <typename Download>
auto RunBusy(CVelmFrame& frame, Download download) {
    frame.SetBusy(true);
    const CVelmScopeExit end([&frame] {
        frame.SetBusy(false);
        frame.RefreshTitle();
    });
    const auto wait = ShowWaitCursor();
    return download([&frame](const CVelmDownloadProgress& progress) { return OnProgress(frame, progress); });
}

void ShowSuccess(const CVelmFrame& frame, std::int32_t count, const CVelmString& details) {
    const CVelmString text =
        u"Updated conversion data files have been successfully downloaded (" + IntegerText(count) + u")." + details;
    MessageBoxW(frame.Handle(), Wide(text), L"Download", MB_OK | MB_ICONINFORMATION);
}

void ShowFailure(const CVelmFrame& frame, const CVelmString& reason) {
    const CVelmString text = u"Velmora could NOT complete downloading due to a system error: " + reason;
    MessageBoxW(frame.Handle(), Wide(text), L"Download", MB_OK | MB_ICONSTOP);
}

/// Computes and shows the current document again when it is the one that got new rates.
void ShowNewRates(CVelmFrame& frame, CVelmConversionDoc& document) {
    if (&document == frame.Document()) {
        document.Recalculate(frame.Program().context);
        frame.List().RefreshValues();
        frame.RefreshRateDays();
        frame.SaveDocument();  // reports a merge that could not be written
    }
}

void MergeIntoCurrent(CVelmFrame& frame) {
    if (!IsConversionFile(frame)) {
        return;
    }
    auto& document = static_cast<CVelmConversionDoc&>(*frame.Document());
    if (Merge(document, frame.Catalog(), frame.Program().context)) {
        ShowNewRates(frame, document);
    }
}

void DownloadUpdateFiles(CVelmFrame& frame, CVelmFetcher& fetcher, const CVelmString& url) {
    CVelmDownloader downloader(frame.Catalog(), fetcher, url);
    const bool done = RunBusy(frame, [&](const CVelmDownloadObserver& observer) { return downloader.Run(observer); });
    if (done) {
        ShowSuccess(frame, downloader.DownloadedCount(), {});
    } else {
        ShowFailure(frame, downloader.ErrorText());
    }
    // The window may have been closed under the box. The update then waits for the next start.
    if (downloader.DownloadedCount() > 0 && IsWindow(frame.Handle())) {
        MergeIntoCurrent(frame);
    }
}

/// Merges a table into the file of rates, the current one or not.
void MergeRates(CVelmFrame& frame, const std::string& table) {
    const CVelmCatalog& catalog = frame.Catalog();
    const CVelmServices& services = catalog.Services();
    const CVelmString name = WithExtension(CVelmString(RATES_FILE), KIND_CONVERSION);
    auto* const document = static_cast<CVelmConversionDoc*>(frame.Catalog().GetDocument(name, false));
    if (document == nullptr) {
        ShowFailure(frame, u"There is no data file " + name + u".");
        return;
    }
    const bool isCurrent = document == frame.Document();
    CVelmTableMerge result = MergeTable(*document, catalog.Folder(), table, TableAge::NotOlder, services);
    if (result.merged) {
        // An update that waits would bring its older rates back.
        RemoveOlderUpdate(*document, catalog.Folder(), services, frame.Program().context);
        ShowNewRates(frame, *document);
    }
    const bool isWritten = !document->modified;
    if (!isCurrent) {
        document->Unload({});
    }
    if (!result.merged || !isWritten) {
        ShowFailure(frame,
                    result.merged ? document->PathIn(catalog.Folder()) + u" could not be written." : result.errorText);
        return;
    }
    CVelmString details = u"\n" + SummaryOf(result);
    for (const CVelmString& remark : RemarksOn(result)) {
        details += u"\n" + remark;
    }
    ShowSuccess(frame, 1, details);
}

void DownloadRates(CVelmFrame& frame, CVelmFetcher& fetcher, const CVelmString& url) {
    CVelmString error;
    const auto table = RunBusy(frame, [&](const CVelmDownloadObserver& observer) {
        return DownloadTable(fetcher, frame.Program().services.files, url, observer, error);
    });
    if (table) {
        MergeRates(frame, *table);
    } else {
        ShowFailure(frame, error);
    }
}

}  // namespace

void DownloadUpdates(CVelmFrame& frame, WORD) {
    const std::unique_ptr<CVelmFetcher> fetcher = CreateHttpFetcher();
    const CVelmString url = UpdateUrl(frame.Program().settings);
    if (IsTableAddress(url)) {
        DownloadRates(frame, *fetcher, url);
    } else {
        DownloadUpdateFiles(frame, *fetcher, url);
    }
}

}  // namespace velm
