#include "support/http_server.h"

#include <utility>

namespace velm::test {
namespace {

constexpr int POLL_MILLISECONDS = 10;

/// The second word of the first line.
std::string PathOf(const std::string& request) {
    const std::size_t start = request.find(' ') + 1;
    return request.substr(start, request.find(' ', start) - start);
}

std::string WithHead(std::string_view status, std::string_view extra, std::string_view body) {
    std::string answer = "HTTP/1.1 ";
    answer.append(status).append("\r\n").append(extra);
    answer += "Connection: close\r\nContent-Type: text/plain\r\nContent-Length: " + std::to_string(body.size());
    return answer.append("\r\n\r\n").append(body);
}

}  // namespace

HttpServer::HttpServer() : listening_(Listen(port_)), thread_([this] { Run(); }) {}

HttpServer::~HttpServer() {
    stopping_ = true;
    thread_.join();
}

std::string HttpServer::Address(std::string_view path) const {
    return ("http://127.0.0.1:" + std::to_string(port_)).append(path);
}

void HttpServer::Serve(const std::string& path, std::string_view body) {
    ServeRaw(path, WithHead("200 OK", "", body));
}

void HttpServer::ServeRaw(const std::string& path, std::string answer) {
    const std::lock_guard lock(mutex_);
    answers_[path] = std::move(answer);
}

void HttpServer::Redirect(const std::string& path, const std::string& address) {
    ServeRaw(path, WithHead("302 Found", "Location: " + address + "\r\n", "moved"));
}

int HttpServer::Requests(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    const auto found = requests_.find(path);
    return found == requests_.end() ? 0 : found->second;
}

void HttpServer::Run() {
    while (!stopping_) {
        if (auto connection = listening_->Accept(POLL_MILLISECONDS)) {
            Answer(std::move(connection));
        }
    }
}

void HttpServer::Answer(std::unique_ptr<Socket> connection) {
    const std::string path = PathOf(connection->ReceiveUpTo("\r\n\r\n"));
    std::string answer = WithHead("404 Not Found", "", "no such page");
    {
        const std::lock_guard lock(mutex_);
        ++requests_[path];
        if (const auto found = answers_.find(path); found != answers_.end()) {
            answer = found->second;
        } else if (const TemporaryFolder* folder = folder_;
                   folder != nullptr && path.size() > 1 && folder->Contains(FromUtf8(path.substr(1)))) {
            const Bytes file = folder->Read(FromUtf8(path.substr(1)));
            answer = WithHead("200 OK", "", std::string(file.begin(), file.end()));
        }
    }
    connection->SendAll(answer);
    if (answer.empty()) {
        silent_.push_back(std::move(connection));
    }
}

}  // namespace velm::test
