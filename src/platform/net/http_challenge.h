#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <vector>

namespace platform {

/// One way in which a server or proxy wants to be convinced (RFC 9110, 11.3).
struct HTTPChallenge {
    QString scheme;  ///< As written; schemes compare without regard to case.
    QString token68;
    QMap<QString, QString> parameters;  ///< Names in lower case; of a repeated one the first.

    [[nodiscard]] bool hasScheme(QLatin1String name) const {
        return scheme.compare(name, Qt::CaseInsensitive) == 0;
    }
};

/// The challenges of all "WWW-Authenticate" or "Proxy-Authenticate" fields of a response, in their
/// order. What cannot be read is left out; so is what follows the first 32 challenges.
[[nodiscard]] std::vector<HTTPChallenge> challengesFromFields(const QStringList& fields);

}  // namespace platform
