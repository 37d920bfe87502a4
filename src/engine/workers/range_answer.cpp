#include "engine/workers/range_answer.h"

#include <cstdint>
#include <limits>
#include <optional>

#include "engine/record/user_settings.h"
#include "engine/workers/download_worker_prototype.h"
#include "http/http_request.h"
#include "platform/net/content_range.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr qint64 partialContent = 206;

/// "Content-Range" (RFC 9110, 14.4).
struct ContentRange {
    qint64 first = 0;
    qint64 last = 0;
    qint64 length = 0;  ///< 0: not known.
};

std::optional<ContentRange> parsedContentRange(const QString& field) {
    const auto range = platform::contentRange(field);
    constexpr std::uint64_t longest = std::numeric_limits<qint64>::max();
    if (!range || range->last >= longest || range->total.value_or(0) > longest)
        return std::nullopt;
    return ContentRange{static_cast<qint64>(range->first), static_cast<qint64>(range->last),
                        static_cast<qint64>(range->total.value_or(0))};
}

QString field(const WorkerResponse& response, const QString& name) {
    return response.headers ? response.headers->value(name).value_or(QString()).trimmed()
                            : QString();
}

bool isWeak(const QString& entityTag) {
    return entityTag.startsWith(u"W/");
}

QString opaqueTag(const QString& entityTag) {
    return isWeak(entityTag) ? entityTag.sliced(2) : entityTag;
}

/// A file that was changed in the second in which it was sent can change again within it
/// (RFC 9110, 8.8.2.2).
bool canTellVersionsApart(const QString& lastModified, const QString& date) {
    const auto modified = http::HTTPRequest::dateFromRFC1123String(lastModified);
    const auto sent = http::HTTPRequest::dateFromRFC1123String(date);
    return modified && sent && modified->secsTo(*sent) >= 1;
}

bool isOfAnotherFile(const WorkerResponse& response, const KnownFile& known) {
    const QString tag = field(response, u"ETag"_s);
    if (!tag.isEmpty() && !known.entityTag.isEmpty())
        return opaqueTag(tag) != opaqueTag(known.entityTag);
    const QString modified = field(response, u"Last-Modified"_s);
    return !modified.isEmpty() && !known.lastModified.isEmpty() && modified != known.lastModified;
}

/// The part as announced, or nothing if it cannot be the one that was asked for.
bool isPartAskedFor(const DQDownloadWorkerPrototype& worker, const WorkerResponse& response,
                    const KnownFile& known) {
    const qint64 start = worker.fractionStartByte() + worker.resumeByteOffset();
    const QString announced = field(response, u"Content-Range"_s);
    if (!announced.isEmpty()) {
        const auto range = parsedContentRange(announced);
        return range && range->first == start &&
               (worker.endByte() == 0 || range->last <= worker.endByte()) &&
               (range->length == 0 || known.length == 0 || range->length == known.length);
    }
    if (field(response, u"Content-Type"_s).startsWith(u"multipart/", Qt::CaseInsensitive))
        return false;
    const qint64 end = worker.endByte() > 0 ? worker.endByte() + 1 : known.length;
    return end == 0 || worker.expectedBytes() < 1 || start + worker.expectedBytes() == end;
}

/// "bytes */LENGTH" (RFC 9110, 15.5.17) with a length that is not the known one.
bool isOfAnotherLength(const WorkerResponse& response, const KnownFile& known) {
    const QString announced = field(response, u"Content-Range"_s);
    if (!announced.startsWith(u"bytes */"_s, Qt::CaseInsensitive))
        return false;
    bool isNumber = false;
    const qint64 length = announced.sliced(announced.indexOf(u'/') + 1).toLongLong(&isNumber);
    return isNumber && length != known.length;
}

bool bringsWholeFile(qint64 statusCode) {
    return statusCode < 0 || (statusCode >= 200 && statusCode <= 299);
}

}  // namespace

void rememberFile(UserSettings& settings, const WorkerResponse& response, qint64 length) {
    forgetFile(settings);
    if (length > 0)
        settings.set(keys::expectedBytes, length);
    if (const QString tag = field(response, u"ETag"_s); !tag.isEmpty())
        settings.set(keys::entityTag, tag);
    const QString modified = field(response, u"Last-Modified"_s);
    if (canTellVersionsApart(modified, field(response, u"Date"_s)))
        settings.set(keys::lastModified, modified);
}

void rememberLengthFromPart(UserSettings& settings, const WorkerResponse& response) {
    const auto range = parsedContentRange(field(response, u"Content-Range"_s));
    if (range && range->length > 0 && !settings.contains(keys::expectedBytes))
        settings.set(keys::expectedBytes, range->length);
}

RangeAnswer judgeRangeAnswer(const DQDownloadWorkerPrototype& worker,
                             const WorkerResponse& response, const KnownFile& known) {
    constexpr qint64 rangeNotSatisfiable = 416;
    if (response.statusCode == rangeNotSatisfiable && isOfAnotherLength(response, known))
        return RangeAnswer::Contradicted;
    if (response.statusCode != partialContent)
        return bringsWholeFile(response.statusCode) ? RangeAnswer::Refused : RangeAnswer::Withheld;
    return isPartAskedFor(worker, response, known) && !isOfAnotherFile(response, known)
               ? RangeAnswer::Honoured
               : RangeAnswer::Contradicted;
}

bool isUnaskedPart(const WorkerResponse& response) {
    if (response.statusCode != partialContent)
        return false;
    const auto range = parsedContentRange(field(response, u"Content-Range"_s));
    return !range || range->first != 0 || range->last + 1 != range->length;
}

}  // namespace engine
