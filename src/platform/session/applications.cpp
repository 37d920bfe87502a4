#include "platform/session/applications.h"

#include <gio/gdesktopappinfo.h>

#include <QFile>
#include <QHash>
#include <memory>

#include "platform/files/type_identifiers.h"

namespace platform {

namespace {

struct Unreferencing {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using AppInfo = std::unique_ptr<GAppInfo, Unreferencing>;

AppInfo appInfoWithIdentifier(const QString& identifier) {
    return AppInfo(
        reinterpret_cast<GAppInfo*>(g_desktop_app_info_new(identifier.toUtf8().constData())));
}

ApplicationEntry entryOf(GAppInfo* info) {
    ApplicationEntry entry{QString::fromUtf8(g_app_info_get_id(info)),
                           QString::fromUtf8(g_app_info_get_display_name(info)),
                           {}};
    if (GIcon* icon = g_app_info_get_icon(info)) {
        gchar* name = g_icon_to_string(icon);
        entry.iconName = QString::fromUtf8(name);
        g_free(name);
    }
    return entry;
}

std::vector<ApplicationEntry> applicationsForType(const QString& mimeType) {
    std::vector<ApplicationEntry> entries;
    const QByteArray type = mimeType.toUtf8();
    const AppInfo preferred(g_app_info_get_default_for_type(type.constData(), FALSE));
    if (preferred) {
        entries.push_back(entryOf(preferred.get()));
    }
    GList* all = g_app_info_get_all_for_type(type.constData());
    for (GList* element = all; element; element = element->next) {
        auto* info = static_cast<GAppInfo*>(element->data);
        if (!preferred || !g_app_info_equal(info, preferred.get())) {
            entries.push_back(entryOf(info));
        }
    }
    g_list_free_full(all, g_object_unref);
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
    return *known.insert(
        key, mimeType.isEmpty() ? std::vector<ApplicationEntry>() : applicationsForType(mimeType));
}

std::optional<ApplicationEntry> applicationWithIdentifier(const QString& identifier) {
    const AppInfo info = appInfoWithIdentifier(identifier);
    return info ? std::optional(entryOf(info.get())) : std::nullopt;
}

bool openFileWithApplication(const QString& path, const QString& identifier) {
    const AppInfo info = identifier.isEmpty() ? nullptr : appInfoWithIdentifier(identifier);
    if (!info) {
        return true;
    }
    GFile* file = g_file_new_for_path(QFile::encodeName(path).constData());
    GList files{file, nullptr, nullptr};
    const bool didLaunch = g_app_info_launch(info.get(), &files, nullptr, nullptr);
    g_object_unref(file);
    return didLaunch;
}

}  // namespace platform
