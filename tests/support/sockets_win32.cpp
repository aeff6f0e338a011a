#include <winsock2.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <stdexcept>

#include "support/sockets.h"

namespace velm::test {
namespace {

constexpr int LONGEST_SEND = 1 << 20;

class WindowsSocket : public Socket {
public:
    explicit WindowsSocket(SOCKET number) : number_(number) {
        const DWORD patience = 5000;
        const auto* value = reinterpret_cast<const char*>(&patience);
        setsockopt(number_, SOL_SOCKET, SO_RCVTIMEO, value, sizeof patience);
        setsockopt(number_, SOL_SOCKET, SO_SNDTIMEO, value, sizeof patience);
    }
    ~WindowsSocket() override { closesocket(number_); }
    WindowsSocket(const WindowsSocket&) = delete;
    WindowsSocket& operator=(const WindowsSocket&) = delete;

    std::size_t Receive(char* buffer, std::size_t count) override {
        const int received = recv(number_, buffer, static_cast<int>(count), 0);
        return received > 0 ? static_cast<std::size_t>(received) : 0;
    }

    bool SendAll(std::string_view bytes) override {
        while (!bytes.empty()) {
            const int part = static_cast<int>(std::min<std::size_t>(bytes.size(), LONGEST_SEND));
            const int sent = send(number_, bytes.data(), part, 0);
            if (sent <= 0) {
                return false;
            }
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }

private:
    SOCKET number_;
};

class WindowsListener : public Listener {
public:
    WindowsListener() {
        WSADATA data{};
        if (WSAStartup(MAKEWORD(2, 2), &data) != 0) {
            throw std::runtime_error("no sockets");
        }
        number_ = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        int length = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        if (number_ == INVALID_SOCKET || bind(number_, generic, length) != 0 || listen(number_, 16) != 0 ||
            getsockname(number_, generic, &length) != 0) {
            throw std::runtime_error("no port to listen on");
        }
        port_ = ntohs(address.sin_port);
    }
    ~WindowsListener() override {
        closesocket(number_);
        WSACleanup();
    }
    WindowsListener(const WindowsListener&) = delete;
    WindowsListener& operator=(const WindowsListener&) = delete;

    std::uint16_t Port() const override { return port_; }

    std::unique_ptr<Socket> Accept(int milliseconds) override {
        WSAPOLLFD waiting{number_, POLLRDNORM, 0};
        if (WSAPoll(&waiting, 1, milliseconds) <= 0) {
            return nullptr;
        }
        const SOCKET connection = accept(number_, nullptr, nullptr);
        return connection == INVALID_SOCKET ? nullptr : std::make_unique<WindowsSocket>(connection);
    }

private:
    SOCKET number_ = INVALID_SOCKET;
    std::uint16_t port_ = 0;
};

}  // namespace

std::unique_ptr<Listener> Listen() {
    return std::make_unique<WindowsListener>();
}

}  // namespace velm::test
