#include "platform/net/body_feed.h"

#include <curl/curl.h>

#include <algorithm>
#include <cerrno>

#include "platform/net/http_read_stream.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

std::size_t BodyFeed::read(char* buffer, std::size_t maximum) {
    const std::uint64_t wanted = std::min<std::uint64_t>(maximum, length_ - supplied_);
    if (wanted == 0)
        return 0;
    const auto piece = source_->read(buffer, static_cast<qsizetype>(wanted));
    switch (piece.state) {
        case HTTPBodySource::State::Data: {
            const auto count = static_cast<std::uint64_t>(std::max<qsizetype>(0, piece.count));
            if (count == 0 || count > wanted)
                return fail(u"its source gave no valid count of bytes"_s);
            supplied_ += count;
            return count;
        }
        case HTTPBodySource::State::NotNow:
            isWaiting_ = true;
            return CURL_READFUNC_PAUSE;
        case HTTPBodySource::State::End:
            return fail(u"it is %1 bytes long instead of %2"_s.arg(supplied_).arg(length_));
        case HTTPBodySource::State::Failed:
            break;
    }
    return fail(u"its source failed"_s);
}

std::size_t BodyFeed::fail(const QString& text) {
    error_ = Error{posixErrorDomain, EIO, u"The body of the request cannot be sent: %1"_s.arg(text),
                   nullptr};
    return CURL_READFUNC_ABORT;
}

bool BodyFeed::rewind() {
    supplied_ = 0;
    isWaiting_ = false;
    return source_->rewind();
}

}  // namespace platform
