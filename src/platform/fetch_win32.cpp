#include <windows.h>
// after windows.h, which these need
#include <urlmon.h>
#include <wininet.h>

#include <atomic>
#include <memory>
#include <system_error>
#include <thread>

#include "platform/fetch.h"
#include "platform/fetch_rules.h"
#include "platform/transfer_watch.h"
#include "platform/wide_text_win32.h"

namespace velm {
namespace {

constexpr DWORD CACHE_NAME_LENGTH = 259;
constexpr DWORD POLL_MILLISECONDS = 20;

/// One download: a system call that may block for minutes, on a thread of its own, and its notifications. Shared by
/// that thread and the waiting one; reference-counted as a COM object.
class CVelmDownload final : public IBindStatusCallback, public IHttpNegotiate {
public:
    CVelmDownload(const CVelmString& url, std::uint64_t maxBytes)
        : url_(url), maxBytes_(maxBytes), done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    CVelmDownload(const CVelmDownload&) = delete;
    CVelmDownload& operator=(const CVelmDownload&) = delete;

    /// Runs on the thread.
    void Perform() {
        const HRESULT started = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        // A cache entry of an earlier run must not pass for a fresh download.
        DeleteUrlCacheEntryW(Wide(url_));
        const HRESULT result = URLDownloadToCacheFileW(nullptr, Wide(url_), cacheName_, CACHE_NAME_LENGTH + 1, 0, this);
        whole_ = result == S_OK && !refused_ && IsWhole();
        if (SUCCEEDED(started)) {
            CoUninitialize();
        }
        if (finished_.exchange(true)) {
            RemoveCopy();
        }
        SetEvent(done_);
    }

    bool IsPendingAfterWait() const { return WaitForSingleObject(done_, POLL_MILLISECONDS) == WAIT_TIMEOUT; }

    /// Detaches the thread: its system call ends at its next notification or when the system gives up.
    void Abandon() {
        refused_ = true;
        if (finished_.exchange(true)) {
            RemoveCopy();
        }
    }

    bool IsWholeCopy() const { return whole_; }
    CVelmString CopyPath() const { return reinterpret_cast<const char16_t*>(cacheName_); }
    bool IsConnected() const { return connected_; }
    std::uint64_t Bytes() const { return bytes_; }

    void RemoveCopy() const {
        if (cacheName_[0] != 0) {
            DeleteFileW(cacheName_);
        }
    }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (id == IID_IHttpNegotiate) {
            *object = static_cast<IHttpNegotiate*>(this);
        } else if (id == IID_IUnknown || id == IID_IBindStatusCallback) {
            *object = static_cast<IBindStatusCallback*>(this);
        } else {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    STDMETHODIMP OnProgress(ULONG bytes, ULONG wholeSize, ULONG status, LPCWSTR text) override {
        if (status == BINDSTATUS_REDIRECTING && !IsAllowed(text)) {
            refused_ = true;
        }
        if (status == BINDSTATUS_SENDINGREQUEST) {
            connected_ = true;
            // Not every system reports redirections, but each of them is one more request.
            refused_ = refused_ || ++requests_ > 1 + MAX_REDIRECTIONS;
        }
        if (status == BINDSTATUS_BEGINDOWNLOADDATA || status == BINDSTATUS_DOWNLOADINGDATA ||
            status == BINDSTATUS_ENDDOWNLOADDATA) {
            connected_ = true;
            bytes_ = bytes;
            announced_ = wholeSize;
        }
        if (bytes_ > maxBytes_ || announced_ > maxBytes_) {
            refused_ = true;
        }
        return refused_ ? E_ABORT : S_OK;
    }
    STDMETHODIMP OnResponse(DWORD code, LPCWSTR, LPCWSTR, LPWSTR*) override {
        connected_ = true;
        if (!IsSuccess(static_cast<long>(code)) || HasLostSecurity()) {
            refused_ = true;
        }
        return refused_ ? E_ABORT : S_OK;
    }
    STDMETHODIMP BeginningTransaction(LPCWSTR, LPCWSTR, DWORD, LPWSTR*) override { return refused_ ? E_ABORT : S_OK; }
    STDMETHODIMP GetBindInfo(DWORD* flags, BINDINFO*) override {
        *flags = BINDF_GETNEWESTVERSION | BINDF_RESYNCHRONIZE | BINDF_SILENTOPERATION | BINDF_NO_UI;
        return S_OK;
    }
    STDMETHODIMP OnStartBinding(DWORD, IBinding* binding) override {
        binding_ = binding;
        return refused_ ? E_ABORT : S_OK;
    }
    STDMETHODIMP GetPriority(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP OnLowResource(DWORD) override { return S_OK; }
    STDMETHODIMP OnStopBinding(HRESULT, LPCWSTR) override {
        binding_ = nullptr;
        return S_OK;
    }
    STDMETHODIMP OnDataAvailable(DWORD, DWORD, FORMATETC*, STGMEDIUM*) override { return S_OK; }
    STDMETHODIMP OnObjectAvailable(REFIID, IUnknown*) override { return S_OK; }

private:
    ~CVelmDownload() {
        if (done_ != nullptr) {
            CloseHandle(done_);
        }
    }

    /// Whether a redirection to this address may be followed.
    bool IsAllowed(LPCWSTR address) const {
        const auto* const text = reinterpret_cast<const char16_t*>(address);
        return text != nullptr && (IsSecure(url_) ? IsSecure(text) : IsWebAddress(text));
    }

    /// Whether a redirection has led from a secure address to another one.
    bool HasLostSecurity() const {
        if (!IsSecure(url_)) {
            return false;
        }
        IWinInetInfo* info = nullptr;
        if (binding_ == nullptr ||
            FAILED(binding_->QueryInterface(IID_IWinInetInfo, reinterpret_cast<void**>(&info)))) {
            return false;
        }
        DWORD flags = 0;
        DWORD size = sizeof flags;
        const HRESULT result = info->QueryOption(INTERNET_OPTION_SECURITY_FLAGS, &flags, &size);
        info->Release();
        return result == S_OK && (flags & SECURITY_FLAG_SECURE) == 0;
    }

    /// The system takes a broken connection for the end of the file.
    bool IsWhole() const {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!GetFileAttributesExW(cacheName_, GetFileExInfoStandard, &data)) {
            return false;
        }
        const std::uint64_t size = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
        return size <= maxBytes_ && (announced_ == 0 || size == announced_);
    }

    const CVelmString url_;
    const std::uint64_t maxBytes_;
    const HANDLE done_;
    wchar_t cacheName_[CACHE_NAME_LENGTH + 1] = {};
    IBinding* binding_ = nullptr;  ///< not owned; used on the download's thread only
    int requests_ = 0;             ///< likewise
    std::atomic<ULONG> references_ = 1;
    std::atomic<bool> refused_ = false;
    std::atomic<bool> connected_ = false;
    std::atomic<std::uint64_t> bytes_ = 0;
    std::atomic<std::uint64_t> announced_ = 0;
    std::atomic<bool> whole_ = false;
    std::atomic<bool> finished_ = false;  ///< set by whichever of the two sides is done first
};

struct Releaser {
    void operator()(CVelmDownload* download) const { download->Release(); }
};
using DownloadReference = std::unique_ptr<CVelmDownload, Releaser>;

bool StartThread(CVelmDownload& download) {
    download.AddRef();
    DownloadReference shared(&download);
    try {
        std::thread([shared = std::move(shared)] { shared->Perform(); }).detach();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

class CVelmMonikerFetcher : public CVelmFetcher {
public:
    explicit CVelmMonikerFetcher(const CVelmFetchLimits& limits) : limits_(limits) {}

    CVelmFetched Fetch(const CVelmString& url, const CVelmFetchProgress& progress) override {
        if (!IsFetchable(url)) {
            return {};
        }
        const DownloadReference download(new CVelmDownload(url, limits_.maxBytes));
        if (!StartThread(*download)) {
            return {};
        }
        CVelmTransferWatch watch(limits_, progress);
        while (download->IsPendingAfterWait()) {
            if (!watch.Continues(download->IsConnected(), download->Bytes())) {
                download->Abandon();
                return {watch.Status(), {}};
            }
        }
        if (!download->IsWholeCopy() || !watch.Continues(true, download->Bytes())) {
            download->RemoveCopy();
            return {watch.Status(), {}};
        }
        return {FetchStatus::Ok, download->CopyPath()};
    }

private:
    CVelmFetchLimits limits_;
};

}  // namespace

std::unique_ptr<CVelmFetcher> CreateHttpFetcher(const CVelmFetchLimits& limits) {
    return std::make_unique<CVelmMonikerFetcher>(limits);
}

}  // namespace velm
