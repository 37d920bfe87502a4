#include "browser/host_manifests.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "browser/callers.h"
#include "structured/json/json_writer.h"

namespace browser {

using namespace Qt::Literals::StringLiterals;

namespace {

Browser chromiumLike(const QString& name, const QString& title, const QString& folder) {
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return {name, title, false, {config + '/'_L1 + folder}, u"NativeMessagingHosts"_s};
}

/// Firefox keeps profiles in the XDG folders by now, where there are none in ~/.mozilla from
/// before, but goes on looking for hosts in the latter.
Browser firefox() {
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return {u"firefox"_s,
            u"Firefox"_s,
            true,
            {QDir::homePath() + "/.mozilla"_L1, config + "/mozilla"_L1},
            u"native-messaging-hosts"_s};
}

QString manifestPath(const Browser& browser, const QString& home) {
    return home + '/'_L1 + browser.folder + '/'_L1 + hostName + ".json"_L1;
}

QStringList existingHomes(const Browser& browser) {
    QStringList homes;
    for (const QString& home : browser.homes)
        if (QFileInfo(home).isDir())
            homes.append(home);
    return homes;
}

/// Those that are named, else all; a name that is not known is a failure.
QList<Browser> chosenBrowsers(const QStringList& names, InstallReport& report) {
    QList<Browser> chosen;
    const QList<Browser> known = knownBrowsers();
    for (const QString& name : names)
        if (std::ranges::none_of(known, [&](const Browser& one) { return one.name == name; }))
            report.fail(u"No browser is known as %1."_s.arg(name));
    for (const Browser& browser : known)
        if (names.isEmpty() || names.contains(browser.name))
            chosen.append(browser);
    return chosen;
}

}  // namespace

QList<Browser> knownBrowsers() {
    return {firefox(),
            chromiumLike(u"chromium"_s, u"Chromium"_s, u"chromium"_s),
            chromiumLike(u"chrome"_s, u"Chrome"_s, u"google-chrome"_s),
            chromiumLike(u"brave"_s, u"Brave"_s, u"BraveSoftware/Brave-Browser"_s),
            chromiumLike(u"edge"_s, u"Edge"_s, u"microsoft-edge"_s),
            chromiumLike(u"vivaldi"_s, u"Vivaldi"_s, u"vivaldi"_s)};
}

QByteArray hostManifest(bool isForFirefox, const QString& program) {
    QVariantMap manifest{{u"name"_s, hostName},
                         {u"description"_s, u"Hands downloads over to Orlop"_s},
                         {u"path"_s, program},
                         {u"type"_s, u"stdio"_s}};
    if (isForFirefox)
        manifest.insert(u"allowed_extensions"_s, QStringList{firefoxExtension});
    else
        manifest.insert(u"allowed_origins"_s,
                        QStringList{"chrome-extension://"_L1 + chromiumExtension + '/'_L1});
    for (QVariant& value : manifest)
        if (value.typeId() == QMetaType::QStringList)
            value = value.toList();
    return structured::writeJson(manifest)->toUtf8() + '\n';
}

InstallReport installManifests(const QStringList& names, const QString& program) {
    InstallReport report;
    for (const Browser& browser : chosenBrowsers(names, report)) {
        QStringList homes = existingHomes(browser);
        if (homes.isEmpty() && names.isEmpty())
            report.lines.append(u"%1: not found, nothing done"_s.arg(browser.title));
        else if (!homes.contains(browser.homes.first()))
            homes.prepend(browser.homes.first());
        for (const QString& home : homes)
            report.write(browser.title, manifestPath(browser, home),
                         hostManifest(browser.isFirefox, program));
    }
    return report;
}

InstallReport uninstallManifests(const QStringList& names) {
    InstallReport report;
    for (const Browser& browser : chosenBrowsers(names, report))
        for (const QString& home : browser.homes)
            report.remove(browser.title, manifestPath(browser, home));
    return report;
}

}  // namespace browser
