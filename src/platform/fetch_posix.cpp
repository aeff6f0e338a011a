#include <curl/curl.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/fetch.h"
#include "platform/fetch_rules.h"
#include "platform/transfer_watch.h"
#include "platform/write_all_posix.h"

namespace velm {
namespace {

/// The local copy while it is written; removed unless kept.
class CVelmCacheFile {
public:
    CVelmCacheFile() {
        const char* folder = std::getenv("TMPDIR");
        path_ = std::string(folder == nullptr || *folder == 0 ? "/tmp" : folder) + "/velmora-XXXXXX";
        descriptor_ = mkostemp(path_.data(), O_CLOEXEC);
    }
    ~CVelmCacheFile() {
        if (!IsOpen()) {
            return;
        }
        close(descriptor_);
        if (!kept_) {
            unlink(path_.c_str());
        }
    }
    CVelmCacheFile(const CVelmCacheFile&) = delete;
    CVelmCacheFile& operator=(const CVelmCacheFile&) = delete;

    bool IsOpen() const { return descriptor_ >= 0; }

    bool Append(std::string_view bytes) { return WriteAll(descriptor_, bytes); }

    /// Keeps the file and returns its path.
    CVelmString Keep() {
        kept_ = true;
        return FromUtf8(path_);
    }

private:
    std::string path_;
    int descriptor_ = -1;
    bool kept_ = false;
};

/// State of the library's callbacks.
struct Transfer {
    CVelmCacheFile file;
    CVelmTransferWatch watch;
    bool connected = false;
    std::uint64_t bytes = 0;
};

/// Called when a connection is ready for the request.
int OnRequest(void* context, char*, char*, int, int) {
    static_cast<Transfer*>(context)->connected = true;
    return CURL_PREREQFUNC_OK;
}

std::size_t OnData(char* data, std::size_t size, std::size_t count, void* context) {
    auto& transfer = *static_cast<Transfer*>(context);
    const std::size_t bytes = size * count;
    transfer.bytes += bytes;
    // Returning anything but the number of bytes given aborts the transfer.
    return transfer.watch.Continues(true, transfer.bytes) && transfer.file.Append({data, bytes}) ? bytes : 0;
}

int OnProgress(void* context, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    auto& transfer = *static_cast<Transfer*>(context);
    return transfer.watch.Continues(transfer.connected, transfer.bytes) ? 0 : 1;
}

/// The library, loaded on the first fetch and kept: it depends on some thirty others, which would slow down the start
/// of commands that fetch nothing.
struct CurlLibrary {
    CurlLibrary() {
        void* library = dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            return;
        }
        const auto find = [library](auto& call, const char* name) {
            call = reinterpret_cast<std::remove_reference_t<decltype(call)>>(dlsym(library, name));
            return call != nullptr;
        };
        decltype(&curl_global_init) start = nullptr;
        const bool complete = find(start, "curl_global_init") && find(open, "curl_easy_init") &&
                              find(set, "curl_easy_setopt") && find(perform, "curl_easy_perform") &&
                              find(ask, "curl_easy_getinfo") && find(close, "curl_easy_cleanup");
        ready = complete && start(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    }

    decltype(&curl_easy_init) open = nullptr;
    decltype(&curl_easy_setopt) set = nullptr;
    decltype(&curl_easy_perform) perform = nullptr;
    decltype(&curl_easy_getinfo) ask = nullptr;
    decltype(&curl_easy_cleanup) close = nullptr;
    bool ready = false;
};

const CurlLibrary& Curl() {
    static const CurlLibrary library;
    return library;
}

struct HandleCloser {
    void operator()(CURL* handle) const { Curl().close(handle); }
};

class CVelmCurlFetcher : public CVelmFetcher {
public:
    explicit CVelmCurlFetcher(const CVelmFetchLimits& limits) : limits_(limits) {}

    CVelmFetched Fetch(const CVelmString& url, const CVelmFetchProgress& progress) override {
        if (!IsFetchable(url) || !Curl().ready) {
            return {};
        }
        Transfer transfer{{}, {limits_, progress}};
        const std::unique_ptr<CURL, HandleCloser> handle(Curl().open());
        if (!handle || !transfer.file.IsOpen()) {
            return {};
        }
        if (!Prepare(handle.get(), ToUtf8(url), transfer) || Curl().perform(handle.get()) != CURLE_OK ||
            !IsSuccess(Status(handle.get()))) {
            return {transfer.watch.Status(), {}};
        }
        return {FetchStatus::Ok, transfer.file.Keep()};
    }

private:
    /// The server's status code, redirections aside; 0 before it has answered.
    static long Status(CURL* handle) {
        long status = 0;
        Curl().ask(handle, CURLINFO_RESPONSE_CODE, &status);
        return status;
    }

    bool Prepare(CURL* handle, const std::string& url, Transfer& transfer) const {
        bool ok = true;
        const auto set = [&](CURLoption option, auto value) {
            ok = Curl().set(handle, option, value) == CURLE_OK && ok;
        };
        set(CURLOPT_URL, url.c_str());
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        set(CURLOPT_REDIR_PROTOCOLS_STR, IsSecure(FromUtf8(url)) ? "https" : "http,https");
        set(CURLOPT_FOLLOWLOCATION, 1L);
        set(CURLOPT_MAXREDIRS, static_cast<long>(MAX_REDIRECTIONS));
        set(CURLOPT_FAILONERROR, 1L);
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_USERAGENT, "Velmora");
        set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits_.connect.count()));
        set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limits_.maxBytes));
        set(CURLOPT_NOPROGRESS, 0L);
        set(CURLOPT_XFERINFOFUNCTION, &OnProgress);
        set(CURLOPT_XFERINFODATA, &transfer);
        set(CURLOPT_WRITEFUNCTION, &OnData);
        set(CURLOPT_WRITEDATA, &transfer);
        set(CURLOPT_PREREQFUNCTION, &OnRequest);
        set(CURLOPT_PREREQDATA, &transfer);
        return ok;
    }

    CVelmFetchLimits limits_;
};

}  // namespace

std::unique_ptr<CVelmFetcher> CreateHttpFetcher(const CVelmFetchLimits& limits) {
    return std::make_unique<CVelmCurlFetcher>(limits);
}

}  // namespace velm
