#pragma once

#include <QByteArray>
#include <QString>

namespace desktop {

/// Where the program looks for what is new. All of it is of the build's configuration
/// (ORLOP_APPCAST_URL and the like of CMake) and empty unless who builds it says otherwise.
struct OnlineSources {
    QString appcast;
    /// The public half of the key that the appcast is signed with: Ed25519, 32 bytes (RFC 8032).
    QByteArray appcastKey;
    QString news;
    QString productPage;
};

[[nodiscard]] OnlineSources onlineSources();

/// What installs new versions of a program at this path, as in "dpkg"; empty: nothing does.
/// `systemRoot` is where the system's own files are looked for.
[[nodiscard]] QString packageManagerOf(const QString& programPath, const QString& systemRoot = {});

}  // namespace desktop
