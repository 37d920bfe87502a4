#include "platform/net/wire_bytes.h"

#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstddef>

namespace platform {

std::optional<std::uint64_t> bytesReceivedOnWire(int socket) {
    tcp_info info{};
    socklen_t length = sizeof(info);
    constexpr std::size_t needed =
        offsetof(tcp_info, tcpi_bytes_received) + sizeof(info.tcpi_bytes_received);
    if (getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &length) != 0 || length < needed)
        return std::nullopt;
    int unread = 0;
    if (ioctl(socket, FIONREAD, &unread) != 0 || unread < 0)
        return std::nullopt;
    const std::uint64_t received = info.tcpi_bytes_received;
    return received - std::min(received, static_cast<std::uint64_t>(unread));
}

int localPortOf(int socket) {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    if (getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return 0;
    if (address.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6&>(address).sin6_port);
    return address.ss_family == AF_INET
               ? ntohs(reinterpret_cast<const sockaddr_in&>(address).sin_port)
               : 0;
}

}  // namespace platform
