#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include "browser/install_report.h"

namespace browser {

/// A browser that we can be called by.
struct Browser {
    /// As it is given on the command line.
    QString name;
    /// For people.
    QString title;
    bool isFirefox = false;
    /// The user's folders of the browser, absolute; it exists for the user if one of them does.
    /// Hosts are looked for in the first.
    QStringList homes;
    /// Where it looks for hosts, below each of them.
    QString folder;
};

/// All that we know, as the environment places their folders.
[[nodiscard]] QList<Browser> knownBrowsers();

/// The description of the host that a browser reads, as JSON, with the host at that absolute path.
[[nodiscard]] QByteArray hostManifest(bool isForFirefox, const QString& program);

/// Puts the host's description where the browsers of the user find it: those that are named, else
/// all that the user has.
[[nodiscard]] InstallReport installManifests(const QStringList& names, const QString& program);

/// Removes it again, also where the browser itself is gone.
[[nodiscard]] InstallReport uninstallManifests(const QStringList& names);

}  // namespace browser
