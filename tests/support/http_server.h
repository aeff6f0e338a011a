#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/text.h"
#include "support/temporary_folder.h"

namespace velm::test {

/// An HTTP server on a free port of 127.0.0.1, on a thread of its own, for the object's lifetime. Unknown paths get
/// 404.
class HttpServer {
public:
    HttpServer();
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// "http://127.0.0.1:PORT" and the path.
    std::string Address(std::string_view path) const;
    CVelmString Url(std::string_view path) const { return FromUtf8(Address(path)); }

    /// Answers with a page.
    void Serve(const std::string& path, std::string_view body);

    /// Serves the folder's files at all other paths. The folder outlives the server.
    void ServeFolder(const TemporaryFolder& folder) { folder_ = &folder; }

    /// Answers with exactly these bytes and closes the connection; with none it accepts the request and never answers.
    void ServeRaw(const std::string& path, std::string answer);

    void Redirect(const std::string& path, const std::string& address) {
        ServeRaw(path, "HTTP/1.1 302 Found\r\nLocation: " + address + "\r\nContent-Length: 0\r\n\r\n");
    }

private:
    using Socket = std::intptr_t;

    void Run();
    void Answer(Socket connection);
    std::string PageOf(const std::string& path);

    std::uint16_t port_ = 0;
    std::vector<Socket> open_;  ///< the listening one, and those that are never answered
    std::atomic<const TemporaryFolder*> folder_ = nullptr;
    std::mutex mutex_;  ///< guards the answers
    std::map<std::string, std::string> answers_;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

}  // namespace velm::test
