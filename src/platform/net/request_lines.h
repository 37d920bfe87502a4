#pragma once

#include <cstdint>
#include <optional>

#include "platform/net/curl_handles.h"
#include "platform/net/http_message.h"

namespace platform {

/// How a request travels, as far as its header fields depend on it.
struct RequestRoute {
    bool usesHttpProxy = false;
    bool hasBody = false;
};

/// The header lines of a request in libcurl's notation, where "Name:" takes away a field of
/// libcurl's own and "Name;" is an empty field.
struct RequestLines {
    CurlLines server;
    CurlLines proxy;  ///< For CONNECT alone.
};

/// Leaves out fields that cannot be sent, and those that belong to the transport. Nothing: no
/// memory.
[[nodiscard]] std::optional<RequestLines> requestLines(const HTTPRequestMessage& message,
                                                       const RequestRoute& route);

/// Whether the method is a token and the host one that can be looked up or connected to.
[[nodiscard]] bool isSendable(const HTTPRequestMessage& message);
/// Whether text may stand where a host name is expected, without meaning anything more.
[[nodiscard]] bool isPlainHost(const QString& host);

}  // namespace platform
