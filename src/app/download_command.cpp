#include <memory>

#include "app/commands.h"
#include "app/main_frame.h"
#include "platform/fetch.h"
#include "platform/wide_text_win32.h"
#include "settings/settings.h"
#include "ui/wait_cursor.h"
#include "update/downloader.h"
#include "update/merge.h"

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

void MergeIntoCurrent(CVelmFrame& frame) {
    if (!IsConversionFile(frame)) {
        return;
    }
    auto& document = static_cast<CVelmConversionDoc&>(*frame.Document());
    if (Merge(document, frame.Catalog(), frame.Program().context)) {
        document.Recalculate(frame.Program().context);
        frame.List().RefreshValues();
        frame.SaveDocument();  // reports a merge that could not be written
    }
}

}  // namespace

void DownloadUpdates(CVelmFrame& frame, WORD) {
    const std::unique_ptr<CVelmFetcher> fetcher = CreateHttpFetcher();
    CVelmDownloader downloader(frame.Catalog(), *fetcher, UpdateUrl(frame.Program().settings));
    bool done = false;
    frame.SetBusy(true);
    {
        const auto wait = ShowWaitCursor();
        done = downloader.Run([&frame](const CVelmDownloadProgress& progress) {
            frame.ShowTitle(u"Downloading " + IntegerText(static_cast<std::int64_t>(progress.file)) + u" of " +
                            IntegerText(static_cast<std::int64_t>(progress.fileCount)));
            const bool stop = IsStopRequested();
            Repaint();
            return !stop;
        });
    }
    frame.SetBusy(false);
    frame.RefreshTitle();
    const CVelmString text =
        done ? u"Updated conversion data files have been successfully downloaded (" +
                   IntegerText(downloader.DownloadedCount()) + u")."
             : u"Velmora could NOT complete downloading due to a system error: " + downloader.ErrorText();
    MessageBoxW(frame.Handle(), Wide(text), L"Download", MB_OK | (done ? MB_ICONINFORMATION : MB_ICONSTOP));
    // The window may have been closed under the box. The update then waits for the next start.
    if (downloader.DownloadedCount() > 0 && IsWindow(frame.Handle())) {
        MergeIntoCurrent(frame);
    }
}

}  // namespace velm
