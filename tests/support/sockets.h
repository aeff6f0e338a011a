#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace velm::test {

/// A socket of this system; closed at the end.
class Socket {
public:
    explicit Socket(std::intptr_t number) : number_(number) {}
    ~Socket();
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    /// Waits for a connection; null when nobody has called within the time.
    std::unique_ptr<Socket> Accept(int milliseconds) const;

    /// What comes up to that end, or before the other side has closed or has said nothing for five seconds.
    std::string ReceiveUpTo(std::string_view end) const;
    void SendAll(std::string_view bytes) const;

private:
    std::intptr_t number_;
};

/// Listens on a free port of 127.0.0.1.
std::unique_ptr<Socket> Listen(std::uint16_t& port);

}  // namespace velm::test
