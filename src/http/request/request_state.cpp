#include "http/request/request_state.h"

#include "http/content/content_type.h"

namespace http {

using namespace Qt::Literals::StringLiterals;

std::optional<QString> RequestState::responseHeader(const QString& name) const {
    return responseHeaders ? responseHeaders->value(name) : std::nullopt;
}

bool RequestState::isResponseCompressed() const {
    const auto encoding = responseHeader(u"Content-Encoding"_s);
    return encoding && isGzipContentEncoding(*encoding);
}

}  // namespace http
