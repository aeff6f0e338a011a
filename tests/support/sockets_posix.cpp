#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <stdexcept>

#include "support/sockets.h"

namespace velm::test {
namespace {

class PosixSocket : public Socket {
public:
    explicit PosixSocket(int number) : number_(number) {
        const timeval patience{5, 0};
        setsockopt(number_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        setsockopt(number_, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    }
    ~PosixSocket() override { close(number_); }
    PosixSocket(const PosixSocket&) = delete;
    PosixSocket& operator=(const PosixSocket&) = delete;

    std::size_t Receive(char* buffer, std::size_t count) override {
        const ssize_t received = recv(number_, buffer, count, 0);
        return received > 0 ? static_cast<std::size_t>(received) : 0;
    }

    bool SendAll(std::string_view bytes) override {
        while (!bytes.empty()) {
            const ssize_t sent = send(number_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent <= 0) {
                return false;
            }
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }

private:
    int number_;
};

class PosixListener : public Listener {
public:
    PosixListener() : number_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        if (number_ < 0 || bind(number_, generic, length) != 0 || listen(number_, 16) != 0 ||
            getsockname(number_, generic, &length) != 0) {
            throw std::runtime_error("no port to listen on");
        }
        port_ = ntohs(address.sin_port);
    }
    ~PosixListener() override { close(number_); }
    PosixListener(const PosixListener&) = delete;
    PosixListener& operator=(const PosixListener&) = delete;

    std::uint16_t Port() const override { return port_; }

    std::unique_ptr<Socket> Accept(int milliseconds) override {
        pollfd waiting{number_, POLLIN, 0};
        if (poll(&waiting, 1, milliseconds) <= 0) {
            return nullptr;
        }
        const int connection = accept4(number_, nullptr, nullptr, SOCK_CLOEXEC);
        return connection < 0 ? nullptr : std::make_unique<PosixSocket>(connection);
    }

private:
    int number_;
    std::uint16_t port_ = 0;
};

}  // namespace

std::unique_ptr<Listener> Listen() {
    return std::make_unique<PosixListener>();
}

}  // namespace velm::test
