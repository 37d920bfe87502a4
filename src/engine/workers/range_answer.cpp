#include "engine/workers/range_answer.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

#include "engine/record/user_settings.h"
#include "engine/workers/download_worker_prototype.h"
#include "http/http_request.h"
#include "platform/net/content_range.h"
#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

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

QString mediaTypeOf(const WorkerResponse& response) {
    return field(response, u"Content-Type"_s).section(u';', 0, 0).trimmed().toLower();
}

/// Empty: the bytes are those of the file.
QString encodingOf(const WorkerResponse& response) {
    const QString encoding = field(response, u"Content-Encoding"_s).toLower();
    return encoding == u"identity" ? QString() : encoding;
}

KnownFile fileOf(const WorkerResponse& response, qint64 length) {
    const QString modified = field(response, u"Last-Modified"_s);
    const QString tag = field(response, u"ETag"_s);
    // Dates cost more to read than all the rest, and beside a strong tag nobody asks how good one
    // is.
    const bool isDateNeeded = !modified.isEmpty() && (tag.isEmpty() || isWeak(tag));
    return {std::max<qint64>(length, 0),
            tag,
            modified,
            isDateNeeded && !canTellVersionsApart(modified, field(response, u"Date"_s)),
            mediaTypeOf(response),
            encodingOf(response)};
}

/// Known on both sides, and not the same.
bool differ(const QString& one, const QString& other) {
    return !one.isEmpty() && !other.isEmpty() && one != other;
}

/// Of a part: all that both answers say is compared. Who said nothing before and says something now
/// is another server than the one that began.
bool isOfAnotherFile(const WorkerResponse& response, const KnownFile& known) {
    const KnownFile now = fileOf(response, 0);
    return differ(opaqueTag(now.entityTag), opaqueTag(known.entityTag)) ||
           differ(now.lastModified, known.lastModified) ||
           now.contentEncoding != known.contentEncoding ||
           (now.hasValidators() && !known.hasValidators());
}

bool isPage(const QString& mediaType) {
    return mediaType == u"text/html" || mediaType == u"application/xhtml+xml";
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

/// "bytes */LENGTH" (RFC 9110, 15.5.17) in answer to a wish for what follows `offset`. Without a
/// length it says nothing about what is there.
RangeAnswer judgeUnsatisfiable(const WorkerResponse& response, const KnownFile& known,
                               qint64 offset) {
    const QString announced = field(response, u"Content-Range"_s);
    if (!announced.startsWith(u"bytes */"_s, Qt::CaseInsensitive))
        return RangeAnswer::Withheld;
    bool isNumber = false;
    const qint64 length = announced.sliced(announced.indexOf(u'/') + 1).toLongLong(&isNumber);
    if (!isNumber || length == known.length)
        return RangeAnswer::Withheld;
    if (known.length == 0 && length == offset)
        return RangeAnswer::NothingLeft;
    return known.length > 0 || length < offset ? RangeAnswer::Contradicted : RangeAnswer::Withheld;
}

/// Of all successes only these mean the file as it is (RFC 9110, 15.3).
bool bringsWholeFile(const WorkerResponse& response) {
    return response.statusCode < 0 || (response.statusCode == platform::status::ok &&
                                       field(response, u"Content-Range"_s).isEmpty());
}

}  // namespace

void rememberFile(UserSettings& settings, const WorkerResponse& response, qint64 length) {
    storeKnownFile(settings, fileOf(response, length));
}

void rememberLengthFromPart(UserSettings& settings, const WorkerResponse& response) {
    const auto range = parsedContentRange(field(response, u"Content-Range"_s));
    if (range && range->length > 0 && !settings.contains(keys::expectedBytes))
        settings.set(keys::expectedBytes, range->length);
}

RangeAnswer judgeRangeAnswer(const DQDownloadWorkerPrototype& worker,
                             const WorkerResponse& response, const KnownFile& known) {
    if (response.statusCode == platform::status::rangeNotSatisfiable)
        return judgeUnsatisfiable(response, known,
                                  worker.fractionStartByte() + worker.resumeByteOffset());
    if (response.statusCode != platform::status::partialContent)
        return bringsWholeFile(response) ? RangeAnswer::Refused : RangeAnswer::Withheld;
    return isPartAskedFor(worker, response, known) && !isOfAnotherFile(response, known)
               ? RangeAnswer::Honoured
               : RangeAnswer::Contradicted;
}

bool speaksAgainstFile(const WorkerResponse& response, qint64 length, const KnownFile& known) {
    if (known == KnownFile())
        return false;
    const KnownFile now = fileOf(response, length);
    if (isPage(now.mediaType) && !known.mediaType.isEmpty() && !isPage(known.mediaType))
        return true;
    return known.length > 0 && now.length != known.length && known.hasValidators() &&
           !now.hasValidators();
}

bool isUnaskedPart(const WorkerResponse& response) {
    const QString announced = field(response, u"Content-Range"_s);
    const bool isPart = response.statusCode == platform::status::partialContent ||
                        (response.statusCode == platform::status::ok && !announced.isEmpty());
    if (!isPart)
        return false;
    const auto range = parsedContentRange(announced);
    return !range || range->first != 0 || range->last + 1 != range->length;
}

}  // namespace engine
