#pragma once

#include <QString>

#include "platform/net/http_message.h"

namespace http {

/// The head of one answer, with the address that gave it. It travels as one value with the event
/// that tells of it: by the time the main thread hears of an answer, the request itself may have
/// met the next one.
struct HTTPResponse {
    platform::Url url;
    int statusCode = 0;
    QString statusLine;  ///< Whole, as it came.
    platform::HTTPHeaders headers;
};

}  // namespace http
