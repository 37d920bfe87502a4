#include "platform/net/body_framing.h"

#include <QStringList>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// One for each time that a length is announced.
QStringList announcedLengths(const HTTPHeaders& headers) {
    QStringList lengths;
    for (const QString& field : headers.values(u"Content-Length"_s)) {
        for (const QString& length : field.split(u','))
            lengths.append(length.trimmed());
    }
    return lengths;
}

/// In lower case. "identity" is the name for none, which some servers still send.
QStringList transferCodings(const HTTPHeaders& headers) {
    QStringList codings;
    for (const QString& field : headers.values(u"Transfer-Encoding"_s)) {
        for (const QString& coding : field.split(u',', Qt::SkipEmptyParts))
            codings.append(coding.trimmed().toLower());
    }
    codings.removeAll(u"identity"_s);
    codings.removeAll(QString());
    return codings;
}

/// Two different lengths are how a response is smuggled into another's body (RFC 9112, 6.3).
bool areInConflict(QStringList lengths) {
    lengths.removeDuplicates();
    return lengths.size() > 1;
}

/// It must be a number that a file can have as its size; else nobody would notice a body that was
/// cut short.
bool isImpossible(const QString& length) {
    bool isNumber = false;
    static_cast<void>(length.toLongLong(&isNumber));
    return !isNumber || !length.front().isDigit();
}

}  // namespace

QString contradictionOfFraming(const HTTPHeaders& response) {
    const QStringList lengths = announcedLengths(response);
    if (areInConflict(lengths))
        return u"the server announced two different lengths"_s;
    const QStringList codings = transferCodings(response);
    if (codings.isEmpty() && std::any_of(lengths.begin(), lengths.end(), isImpossible))
        return u"the server announced a length that cannot be"_s;
    // Any other would be undone silently, or not at all.
    if (codings.count(u"chunked"_s) != codings.size())
        return u"the server used a transfer coding that it was not asked for"_s;
    return {};
}

std::optional<std::uint64_t> announcedBodyLength(const HTTPHeaders& response) {
    const QStringList lengths = announcedLengths(response);
    if (lengths.isEmpty() || !transferCodings(response).isEmpty())
        return std::nullopt;
    return lengths.first().toULongLong();
}

bool endsWithConnection(const HTTPHeaders& response) {
    return announcedLengths(response).isEmpty() && transferCodings(response).isEmpty();
}

}  // namespace platform
