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

/// An HTTP server on a port of 127.0.0.1, on a thread of its own; it stops at the end. A path that nothing was said
/// about is answered with 404.
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

    /// Answers with the folder's files where nothing else was said. The folder outlives the server.
    void ServeFolder(const TemporaryFolder& folder) { folder_ = &folder; }

    /// Answers with these very bytes and cuts the connection.
    void ServeRaw(const std::string& path, std::string answer);

    void Redirect(const std::string& path, const std::string& address) {
        ServeRaw(path, "HTTP/1.1 302 Found\r\nLocation: " + address + "\r\nContent-Length: 0\r\n\r\n");
    }

    /// Takes the request and never answers.
    void KeepSilent(const std::string& path) { ServeRaw(path, {}); }

    /// How often a path was asked for.
    int Requests(const std::string& path) const;

private:
    using Socket = std::intptr_t;

    void Run();
    void Answer(Socket connection);
    std::string PageOf(const std::string& path);

    std::uint16_t port_ = 0;
    std::vector<Socket> open_;  ///< the listening one, and those that are never answered
    std::atomic<const TemporaryFolder*> folder_ = nullptr;
    mutable std::mutex mutex_;  ///< guards the two maps
    std::map<std::string, std::string> answers_;
    std::map<std::string, int> requests_;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

}  // namespace velm::test
