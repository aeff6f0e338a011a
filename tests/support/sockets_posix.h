// The two systems have the same calls, but not the same types.
#pragma once

#include <arpa/inet.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstddef>

namespace velm::test {

using Number = int;
using Count = std::size_t;
constexpr int NO_SIGNAL = MSG_NOSIGNAL;
constexpr auto CloseSocket = close;

inline void StartSockets() {}

}  // namespace velm::test
