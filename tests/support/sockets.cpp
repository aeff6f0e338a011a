#include "support/sockets.h"

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <stdexcept>

namespace velm::test {
namespace {

// The two systems have the same calls, but not the same types.
#ifdef _WIN32
using Number = SOCKET;
using Count = int;
using Patience = DWORD;
constexpr Patience PATIENCE = 5000;
constexpr int CLOSED_IN_CHILDREN = 0;
constexpr int NO_SIGNAL = 0;
constexpr auto CloseSocket = closesocket;
constexpr auto Poll = WSAPoll;

std::intptr_t OpenSocket(int type) {
    static WSADATA data;
    static const int failure = WSAStartup(MAKEWORD(2, 2), &data);
    return failure == 0 ? static_cast<std::intptr_t>(socket(AF_INET, type, 0)) : -1;
}
#else
using Number = int;
using Count = std::size_t;
using Patience = timeval;
constexpr Patience PATIENCE = {5, 0};
constexpr int CLOSED_IN_CHILDREN = SOCK_CLOEXEC;
constexpr int NO_SIGNAL = MSG_NOSIGNAL;
constexpr auto CloseSocket = close;
constexpr auto Poll = poll;

std::intptr_t OpenSocket(int type) {
    return socket(AF_INET, type, 0);
}
#endif

}  // namespace

Socket::Socket(std::intptr_t number) : number_(number) {
    const auto* patience = reinterpret_cast<const char*>(&PATIENCE);
    setsockopt(static_cast<Number>(number_), SOL_SOCKET, SO_RCVTIMEO, patience, sizeof PATIENCE);
    setsockopt(static_cast<Number>(number_), SOL_SOCKET, SO_SNDTIMEO, patience, sizeof PATIENCE);
}

Socket::~Socket() {
    CloseSocket(static_cast<Number>(number_));
}

std::size_t Socket::Receive(char* buffer, std::size_t count) const {
    const auto received = recv(static_cast<Number>(number_), buffer, static_cast<Count>(count), 0);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(received, 0));
}

void Socket::SendAll(std::string_view bytes) const {
    while (!bytes.empty()) {
        const auto part = static_cast<Count>(std::min<std::size_t>(bytes.size(), 1 << 20));
        const auto sent = send(static_cast<Number>(number_), bytes.data(), part, NO_SIGNAL);
        if (sent <= 0) {
            return;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

Listener::Listener() : number_(OpenSocket(SOCK_STREAM | CLOSED_IN_CHILDREN)), closing_(number_) {
    const auto number = static_cast<Number>(number_);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(number, generic, length) != 0 || listen(number, 16) != 0 || getsockname(number, generic, &length) != 0) {
        throw std::runtime_error("no port to listen on");
    }
    port_ = ntohs(address.sin_port);
}

std::unique_ptr<Socket> Listener::Accept(int milliseconds) const {
    pollfd waiting{static_cast<Number>(number_), POLLRDNORM, 0};
    if (Poll(&waiting, 1, milliseconds) <= 0) {
        return nullptr;
    }
    return std::make_unique<Socket>(static_cast<std::intptr_t>(accept(waiting.fd, nullptr, nullptr)));
}

}  // namespace velm::test
