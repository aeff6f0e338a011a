#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace velm::test {

/// A connection; closed at the end.
class Socket {
public:
    explicit Socket(std::intptr_t number);
    ~Socket();
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    /// Bytes received, 0 when the other side has closed or has said nothing for five seconds.
    std::size_t Receive(char* buffer, std::size_t count) const;
    void SendAll(std::string_view bytes) const;

private:
    std::intptr_t number_;
};

/// Waits for connections on a free port of 127.0.0.1.
class Listener {
public:
    Listener();
    std::uint16_t Port() const { return port_; }

    /// Null when nobody has called within the time.
    std::unique_ptr<Socket> Accept(int milliseconds) const;

private:
    std::intptr_t number_;
    Socket closing_;
    std::uint16_t port_ = 0;
};

}  // namespace velm::test
