#include "engine/record/checksum.h"

#include <QRegularExpression>
#include <array>
#include <utility>

#include "engine/record/user_settings.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

using Hash = QCryptographicHash;

struct Algorithm {
    Hash::Algorithm value = Hash::Sha256;
    QLatin1StringView name;
    QLatin1StringView title;
};

constexpr std::array algorithms{
    Algorithm{Hash::Md5, "md5"_L1, "MD5"_L1},
    Algorithm{Hash::Sha1, "sha1"_L1, "SHA-1"_L1},
    Algorithm{Hash::Sha224, "sha224"_L1, "SHA-224"_L1},
    Algorithm{Hash::Sha256, "sha256"_L1, "SHA-256"_L1},
    Algorithm{Hash::Sha384, "sha384"_L1, "SHA-384"_L1},
    Algorithm{Hash::Sha512, "sha512"_L1, "SHA-512"_L1},
};

const Algorithm* find(Hash::Algorithm value) {
    for (const Algorithm& algorithm : algorithms)
        if (algorithm.value == value)
            return &algorithm;
    return nullptr;
}

constexpr std::array resultNames{
    std::pair{ChecksumResult::Verified, "Verified"_L1},
    std::pair{ChecksumResult::Wrong, "Wrong"_L1},
    std::pair{ChecksumResult::Computed, "Computed"_L1},
    std::pair{ChecksumResult::Verifying, "Verifying"_L1},
    std::pair{ChecksumResult::Unreadable, "Unreadable"_L1},
};

}  // namespace

QString Checksum::text() const {
    const Algorithm* const found = find(algorithm);
    return found != nullptr ? found->name + u'=' + hex() : QString();
}

QString algorithmTitle(Hash::Algorithm algorithm) {
    const Algorithm* const found = find(algorithm);
    return found != nullptr ? QString(found->title) : QString();
}

std::optional<Hash::Algorithm> algorithmNamed(QStringView name) {
    const QString plain = name.toString().toLower().remove(u'-');
    if (plain == u"sha")
        return Hash::Sha1;
    for (const Algorithm& algorithm : algorithms)
        if (plain == algorithm.name)
            return algorithm.value;
    return {};
}

std::optional<Hash::Algorithm> algorithmOfLength(qsizetype bytes) {
    for (const Algorithm& algorithm : algorithms)
        if (Hash::hashLength(algorithm.value) == bytes)
            return algorithm.value;
    return {};
}

std::optional<Checksum> checksumFromText(const QString& text) {
    constexpr qsizetype shortestDigest = 32;
    if (text.size() < shortestDigest)
        return {};
    static const QRegularExpression form(
        u"\\A\\s*(?:(md5|sha-?(?:1|224|256|384|512)?)\\s*[=:\\s]\\s*)?((?:[0-9a-f]{2}){16,64})\\s*\\z"_s,
        QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(text);
    if (!match.hasMatch())
        return {};
    const QByteArray digest = QByteArray::fromHex(match.captured(2).toLatin1());
    const auto byLength = algorithmOfLength(digest.size());
    const auto named = match.hasCaptured(1) ? algorithmNamed(match.capturedView(1)) : byLength;
    if (!byLength || named != byLength)
        return {};
    return Checksum{*byLength, digest};
}

std::optional<Checksum> checksumFromFragment(const QString& fragment) {
    for (const QString& part : fragment.split(u'&')) {
        // Digits alone may be any anchor.
        if (!part.contains(u'='))
            continue;
        if (auto checksum = checksumFromText(part))
            return checksum;
    }
    return {};
}

std::optional<Checksum> expectedChecksum(const UserSettings& settings) {
    auto checksum = checksumFromText(settings.string(keys::checksum));
    return checksum ? checksum : checksumFromText(settings.string(keys::serverChecksum));
}

std::optional<Checksum> computedChecksum(const UserSettings& settings) {
    return checksumFromText(settings.string(keys::computedChecksum));
}

ChecksumResult checksumResult(const UserSettings& settings) {
    const QString name = settings.string(keys::checksumResult);
    for (const auto& [result, known] : resultNames)
        if (name == known)
            return result;
    return ChecksumResult::Unknown;
}

void setChecksumResult(UserSettings& settings, ChecksumResult result,
                       const std::optional<Checksum>& computed) {
    settings.remove(keys::checksumResult);
    settings.remove(keys::computedChecksum);
    for (const auto& [known, name] : resultNames)
        if (known == result)
            settings.set(keys::checksumResult, QString(name));
    if (computed)
        settings.set(keys::computedChecksum, computed->text());
}

void judgeChecksum(UserSettings& settings, const Checksum& computed) {
    const auto expected = expectedChecksum(settings);
    const ChecksumResult result = !expected               ? ChecksumResult::Computed
                                  : *expected == computed ? ChecksumResult::Verified
                                                          : ChecksumResult::Wrong;
    setChecksumResult(settings, result, computed);
}

}  // namespace engine
