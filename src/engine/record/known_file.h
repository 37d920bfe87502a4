#pragma once

#include <QString>
#include <QStringList>

namespace engine {

class UserSettings;

/// What servers said about the file that partial data belongs to. With it a resume can tell whether
/// it would go on with the same file. Empty: they did not say.
struct KnownFile {
    qint64 length = 0;  ///< 0: not known.
    QString entityTag;
    QString lastModified;
    /// It cannot tell two versions of one second apart (RFC 9110, 8.8.2.2). Not looked at beside a
    /// strong tag.
    bool isDateWeak = false;
    QString mediaType;        ///< In lower case, without parameters.
    QString contentEncoding;  ///< Of the bytes as they lie there.

    /// For "If-Range": what proves that two answers are parts of the same bytes. Empty: nothing.
    [[nodiscard]] QString rangeValidator() const;
    [[nodiscard]] bool hasValidators() const {
        return !entityTag.isEmpty() || !lastModified.isEmpty();
    }

    friend bool operator==(const KnownFile&, const KnownFile&) = default;
};

/// The keys under which it is kept, and what is kept of the partial file itself.
[[nodiscard]] const QStringList& knownFileKeys();
[[nodiscard]] KnownFile knownFile(const UserSettings& settings);
void storeKnownFile(UserSettings& settings, const KnownFile& file);
void forgetFile(UserSettings& settings);

}  // namespace engine
