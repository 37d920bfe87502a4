#include "platform/session/applications.h"

#include <QFile>
#include <QHash>
#include <memory>

#include "platform/files/type_identifiers.h"
#include "platform/session/gio.h"
#include "platform/session/launch_context.h"

namespace platform {

namespace {

struct Unreferencing {
    decltype(Gio::unref) unref = nullptr;
    void operator()(gpointer object) const { unref(object); }
};
using AppInfo = std::unique_ptr<GAppInfo, Unreferencing>;

AppInfo appInfoWithIdentifier(const Gio& gio, const QString& identifier) {
    return AppInfo(
        reinterpret_cast<GAppInfo*>(gio.newDesktopAppInfo(identifier.toUtf8().constData())),
        {gio.unref});
}

ApplicationEntry entryOf(const Gio& gio, GAppInfo* info) {
    ApplicationEntry entry{
        QString::fromUtf8(gio.identifier(info)), QString::fromUtf8(gio.displayName(info)), {}};
    if (GIcon* icon = gio.icon(info)) {
        gchar* name = gio.iconText(icon);
        entry.iconName = QString::fromUtf8(name);
        g_free(name);
    }
    return entry;
}

std::vector<ApplicationEntry> applicationsForType(const Gio& gio, const QString& mimeType) {
    std::vector<ApplicationEntry> entries;
    const QByteArray type = mimeType.toUtf8();
    const AppInfo preferred(gio.defaultForType(type.constData(), FALSE), {gio.unref});
    if (preferred) {
        entries.push_back(entryOf(gio, preferred.get()));
    }
    GList* all = gio.allForType(type.constData());
    for (GList* element = all; element; element = element->next) {
        auto* info = static_cast<GAppInfo*>(element->data);
        if (!preferred || !gio.equal(info, preferred.get())) {
            entries.push_back(entryOf(gio, info));
        }
    }
    g_list_free_full(all, gio.unref);
    return entries;
}

}  // namespace

std::vector<ApplicationEntry> applicationsForExtension(const QString& extension) {
    static QHash<QString, std::vector<ApplicationEntry>> known;
    const QString key = extension.toLower();
    if (const auto found = known.constFind(key); found != known.cend()) {
        return *found;
    }
    const QString mimeType = key.isEmpty() ? QString() : mimeTypeForExtension(key);
    const Gio* const gio = mimeType.isEmpty() ? nullptr : Gio::library();
    return *known.insert(key, gio != nullptr ? applicationsForType(*gio, mimeType)
                                             : std::vector<ApplicationEntry>());
}

std::optional<ApplicationEntry> applicationWithIdentifier(const QString& identifier) {
    const Gio* const gio = Gio::library();
    const AppInfo info = gio != nullptr ? appInfoWithIdentifier(*gio, identifier) : nullptr;
    return info ? std::optional(entryOf(*gio, info.get())) : std::nullopt;
}

bool openFileWithApplication(const QString& path, const QString& identifier) {
    const Gio* const gio = identifier.isEmpty() ? nullptr : Gio::library();
    const AppInfo info = gio != nullptr ? appInfoWithIdentifier(*gio, identifier) : nullptr;
    if (!info) {
        return true;
    }
    GFile* file = gio->newFileForPath(QFile::encodeName(path).constData());
    GList files{file, nullptr, nullptr};
    const bool didLaunch =
        gio->launch(info.get(), &files, LaunchContext(*gio).get(), nullptr) != FALSE;
    gio->unref(file);
    return didLaunch;
}

}  // namespace platform
