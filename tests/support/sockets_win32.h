// The two systems have the same calls, but not the same types.
#pragma once

#include <winsock2.h>
#include <ws2tcpip.h>

namespace velm::test {

using Number = SOCKET;
using Count = int;
constexpr int NO_SIGNAL = 0;
constexpr auto CloseSocket = closesocket;

inline void StartSockets() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
}

}  // namespace velm::test
