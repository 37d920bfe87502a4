#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QString>
#include <QStringView>
#include <optional>

namespace engine {

class UserSettings;

/// What the bytes of a file add up to, or are to add up to. MD5, SHA-1 and the four lengths of
/// SHA-2 (RFC 1321, RFC 6234).
struct Checksum {
    QCryptographicHash::Algorithm algorithm = QCryptographicHash::Sha256;
    QByteArray digest;  ///< Raw, of the length that belongs to the algorithm.

    /// "sha256=9f86…", as it is kept and written behind addresses.
    [[nodiscard]] QString text() const;
    [[nodiscard]] QString hex() const { return QString::fromLatin1(digest.toHex()); }

    friend bool operator==(const Checksum&, const Checksum&) = default;
};

/// "SHA-256", for readers.
[[nodiscard]] QString algorithmTitle(QCryptographicHash::Algorithm algorithm);
/// From "sha256", "SHA-256" and the like, and "sha", which means SHA-1. Nothing: unknown.
[[nodiscard]] std::optional<QCryptographicHash::Algorithm> algorithmNamed(QStringView name);
/// Nothing: no algorithm that is known makes so many bytes.
[[nodiscard]] std::optional<QCryptographicHash::Algorithm> algorithmOfLength(qsizetype bytes);

/// From "sha256=HEX", "SHA-256: HEX" or the digits alone, whose number tells the algorithm.
/// Nothing: it is no checksum.
[[nodiscard]] std::optional<Checksum> checksumFromText(const QString& text);
/// From what stands behind the "#" of an address, which may hold other things too, with "&"
/// between.
[[nodiscard]] std::optional<Checksum> checksumFromFragment(const QString& fragment);

/// What is known of the bytes of a download's file.
enum class ChecksumResult {
    Unknown,     ///< They were not looked at, or there was nothing to compare with.
    Verifying,   ///< They are being read.
    Verified,    ///< They add up to what was expected.
    Wrong,       ///< They do not.
    Computed,    ///< They were added up, and there was nothing to compare with.
    Unreadable,  ///< The file could not be read.
};

/// What the user says the file adds up to, or else what its server said. Nothing: nobody did.
[[nodiscard]] std::optional<Checksum> expectedChecksum(const UserSettings& settings);
[[nodiscard]] std::optional<Checksum> computedChecksum(const UserSettings& settings);
[[nodiscard]] ChecksumResult checksumResult(const UserSettings& settings);
/// `computed`: nothing if it does not belong to the result.
void setChecksumResult(UserSettings& settings, ChecksumResult result,
                       const std::optional<Checksum>& computed = {});
/// Says of the bytes of the file, by what is expected of them, what is true of them.
void judgeChecksum(UserSettings& settings, const Checksum& computed);

}  // namespace engine
