#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace velm::test {

/// A socket of this system; closed at the end.
class Socket {
public:
    virtual ~Socket() = default;

    /// Bytes received, 0 when the other side has closed or has said nothing for five seconds.
    virtual std::size_t Receive(char* buffer, std::size_t count) = 0;

    /// False when the other side has gone.
    virtual bool SendAll(std::string_view bytes) = 0;
};

/// Waits for connections on a free port of 127.0.0.1.
class Listener {
public:
    virtual ~Listener() = default;
    virtual std::uint16_t Port() const = 0;

    /// Null when nobody has called within the time.
    virtual std::unique_ptr<Socket> Accept(int milliseconds) = 0;
};

std::unique_ptr<Listener> Listen();

}  // namespace velm::test
