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

void StartSockets() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
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

void StartSockets() {}
#endif

}  // namespace

Socket::~Socket() {
    CloseSocket(static_cast<Number>(number_));
}

std::unique_ptr<Socket> Socket::Accept(int milliseconds) const {
    pollfd waiting{static_cast<Number>(number_), POLLRDNORM, 0};
    if (Poll(&waiting, 1, milliseconds) <= 0) {
        return nullptr;
    }
    const auto connection = accept(waiting.fd, nullptr, nullptr);
    const auto* patience = reinterpret_cast<const char*>(&PATIENCE);
    setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, patience, sizeof PATIENCE);
    setsockopt(connection, SOL_SOCKET, SO_SNDTIMEO, patience, sizeof PATIENCE);
    return std::make_unique<Socket>(static_cast<std::intptr_t>(connection));
}

std::string Socket::ReceiveUpTo(std::string_view end) const {
    std::string text;
    for (char c = 0; !text.ends_with(end) && recv(static_cast<Number>(number_), &c, 1, 0) == 1;) {
        text += c;
    }
    return text;
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

std::unique_ptr<Socket> Listen(std::uint16_t& port) {
    StartSockets();
    const Number number = socket(AF_INET, SOCK_STREAM | CLOSED_IN_CHILDREN, 0);
    auto listening = std::make_unique<Socket>(static_cast<std::intptr_t>(number));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(number, generic, length) != 0 || listen(number, 16) != 0 || getsockname(number, generic, &length) != 0) {
        throw std::runtime_error("no port to listen on");
    }
    port = ntohs(address.sin_port);
    return listening;
}

}  // namespace velm::test
