#include "engine/workers/retry_after.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <algorithm>
#include <cmath>

#include "http/http_request.h"
#include "platform/net/status_codes.h"
#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr platform::Seconds shortest = 1, longest = 24 * 60 * 60;

std::optional<QDateTime> dateField(const WorkerResponse& response, const QString& name) {
    const auto text = response.headers ? response.headers->value(name) : std::nullopt;
    return text ? http::HTTPRequest::dateFromRFC1123String(text->trimmed()) : std::nullopt;
}

std::optional<platform::Seconds> secondsOfDigits(const QString& text) {
    const bool isNumber =
        !text.isEmpty() && std::all_of(text.begin(), text.end(), platform::isAsciiDigit);
    // More digits than a number holds are a very long time as well.
    return isNumber ? std::optional(text.toDouble()) : std::nullopt;
}

}  // namespace

bool asksToWait(qint64 statusCode) {
    return statusCode == platform::status::tooManyRequests ||
           statusCode == platform::status::serviceUnavailable;
}

std::optional<platform::Seconds> retryAfter(const WorkerResponse& response, const QDateTime& now) {
    const QString name = u"Retry-After"_s;
    const auto text = response.headers ? response.headers->value(name) : std::nullopt;
    if (!text)
        return std::nullopt;
    std::optional<platform::Seconds> seconds = secondsOfDigits(text->trimmed());
    if (!seconds) {
        const auto date = dateField(response, name);
        if (!date)
            return std::nullopt;
        const QDateTime sent = dateField(response, u"Date"_s).value_or(now);
        seconds = static_cast<platform::Seconds>(sent.secsTo(*date));
    }
    return std::clamp(*seconds, shortest, longest);
}

platform::Seconds pauseAfterRefusal(int refusals) {
    constexpr platform::Seconds mostWithoutChance = 60;
    constexpr double growth = 3, leastShare = 0.75, shareOfChance = 0.5;
    const platform::Seconds pause = std::min(std::pow(growth, refusals), mostWithoutChance);
    return pause * (leastShare + shareOfChance * QRandomGenerator::global()->generateDouble());
}

}  // namespace engine
