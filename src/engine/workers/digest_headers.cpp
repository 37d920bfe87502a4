#include "engine/workers/digest_headers.h"

#include <QStringList>

#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr qsizetype longestField = 4096;

std::optional<Checksum> checksumOf(QCryptographicHash::Algorithm algorithm, const QString& base64) {
    const auto decoded = QByteArray::fromBase64Encoding(base64.trimmed().toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.size() != QCryptographicHash::hashLength(algorithm))
        return {};
    return Checksum{algorithm, decoded.decoded};
}

/// The longest of a list of "NAME=VALUE". `isStructured`: values stand between colons (RFC 8941,
/// 3.3.5) and may have parameters.
std::optional<Checksum> longestIn(const QString& field, bool isStructured) {
    std::optional<Checksum> longest;
    if (field.size() > longestField)
        return longest;
    for (const QString& member : field.split(u',')) {
        const auto algorithm = algorithmNamed(QStringView(member.section(u'=', 0, 0)).trimmed());
        QString value = member.section(u'=', 1).trimmed();
        if (isStructured) {
            const qsizetype end = value.indexOf(u':', 1);
            if (!value.startsWith(u':') || end < 0)
                continue;
            value = value.sliced(1, end - 1);
        }
        const auto checksum = algorithm ? checksumOf(*algorithm, value) : std::nullopt;
        if (checksum && (!longest || checksum->digest.size() > longest->digest.size()))
            longest = checksum;
    }
    return longest;
}

}  // namespace

std::optional<Checksum> checksumInHeaders(const WorkerResponse& response) {
    if (!response.headers)
        return {};
    const auto field = [&](const QString& name) {
        return response.headers->value(name).value_or(QString()).trimmed();
    };
    const QString coding = field(u"Content-Encoding"_s).toLower();
    if (!coding.isEmpty() && coding != u"identity")
        return {};
    if (auto checksum = longestIn(field(u"Repr-Digest"_s), true))
        return checksum;
    if (response.statusCode == platform::status::partialContent ||
        !field(u"Content-Range"_s).isEmpty())
        return {};
    if (auto checksum = longestIn(field(u"Content-Digest"_s), true))
        return checksum;
    if (auto checksum = longestIn(field(u"Digest"_s), false))
        return checksum;
    return checksumOf(QCryptographicHash::Md5, field(u"Content-MD5"_s));
}

}  // namespace engine
