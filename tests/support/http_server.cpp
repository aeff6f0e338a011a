#include "support/http_server.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include VELMORA_SOCKETS

namespace velm::test {
namespace {

constexpr int POLL_MILLISECONDS = 10;
constexpr int PATIENCE_MILLISECONDS = 5000;

bool IsReadable(Number socket, int milliseconds) {
    fd_set sockets;
    FD_ZERO(&sockets);
    FD_SET(socket, &sockets);
    timeval time{milliseconds / 1000, milliseconds % 1000 * 1000};
    return select(static_cast<int>(socket) + 1, &sockets, nullptr, nullptr, &time) > 0;
}

/// A socket that listens on a free port of 127.0.0.1.
Number Listen(std::uint16_t& port) {
    StartSockets();
    const Number number = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(number, generic, length) != 0 || listen(number, 16) != 0 || getsockname(number, generic, &length) != 0) {
        throw std::runtime_error("no port to listen on");
    }
    port = ntohs(address.sin_port);
    return number;
}

std::string WithHead(const std::string& status, std::string_view body) {
    std::string answer = "HTTP/1.1 " + status + "\r\nConnection: close\r\nContent-Type: text/plain\r\n";
    answer += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    return answer.append(body);
}

}  // namespace

HttpServer::HttpServer() : open_{static_cast<Socket>(Listen(port_))}, thread_([this] { Run(); }) {}

HttpServer::~HttpServer() {
    stopping_ = true;
    thread_.join();
    for (const Socket socket : open_) {
        CloseSocket(static_cast<Number>(socket));
    }
}

std::string HttpServer::Address(std::string_view path) const {
    return ("http://127.0.0.1:" + std::to_string(port_)).append(path);
}

void HttpServer::Serve(const std::string& path, std::string_view body) {
    ServeRaw(path, WithHead("200 OK", body));
}

void HttpServer::ServeRaw(const std::string& path, std::string answer) {
    const std::lock_guard lock(mutex_);
    answers_[path] = std::move(answer);
}

void HttpServer::Run() {
    while (!stopping_) {
        if (const auto listening = static_cast<Number>(open_.front()); IsReadable(listening, POLL_MILLISECONDS)) {
            Answer(static_cast<Socket>(accept(listening, nullptr, nullptr)));
        }
    }
}

std::string HttpServer::PageOf(const std::string& path) {
    const std::lock_guard lock(mutex_);
    if (const auto found = answers_.find(path); found != answers_.end()) {
        return found->second;
    }
    const CVelmString name = FromUtf8(path.substr(std::min<std::size_t>(1, path.size())));
    if (const TemporaryFolder* folder = folder_; folder != nullptr && !name.empty() && folder->Contains(name)) {
        const Bytes file = folder->Read(name);
        return WithHead("200 OK", std::string(file.begin(), file.end()));
    }
    return WithHead("404 Not Found", "no such page");
}

void HttpServer::Answer(Socket connection) {
    const auto socket = static_cast<Number>(connection);
    std::string request;
    for (char c = 0;
         !request.ends_with("\r\n\r\n") && IsReadable(socket, PATIENCE_MILLISECONDS) && recv(socket, &c, 1, 0) == 1;) {
        request += c;
    }
    const std::size_t start = request.find(' ') + 1;  // the path is the second word
    const std::string answer = PageOf(request.substr(start, request.find(' ', start) - start));
    for (std::string_view rest = answer; !rest.empty();) {
        const auto sent =
            send(socket, rest.data(), static_cast<Count>(std::min<std::size_t>(rest.size(), 1 << 20)), NO_SIGNAL);
        rest.remove_prefix(sent > 0 ? static_cast<std::size_t>(sent) : rest.size());
    }
    if (answer.empty()) {
        open_.push_back(connection);
    } else {
        CloseSocket(socket);
    }
}

}  // namespace velm::test
