#include "ui/menus/open_with_menu.h"

#include <QDir>
#include <QIcon>
#include <QMenu>
#include <algorithm>
#include <vector>

#include "links/path_components.h"
#include "platform/session/applications.h"
#include "platform/text/comparison.h"
#include "ui/menus/menu_items.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

using platform::ApplicationEntry;
using Applications = std::vector<ApplicationEntry>;

const auto ownIdentifier = u"com.tarnworks.Orlop.desktop"_s;

/// Those that open every one of the files. An extension that nothing is known of narrows nothing.
Applications commonApplications(const QStringList& paths) {
    std::optional<Applications> common;
    for (const QString& path : paths) {
        const Applications some = platform::applicationsForExtension(links::pathExtension(path));
        if (some.empty()) {
            continue;
        }
        if (!common) {
            common = some;
            continue;
        }
        std::erase_if(*common, [&](const ApplicationEntry& entry) {
            return std::none_of(some.begin(), some.end(), [&](const ApplicationEntry& other) {
                return other.identifier == entry.identifier;
            });
        });
    }
    Applications applications = common.value_or(Applications());
    std::erase_if(applications,
                  [](const ApplicationEntry& entry) { return entry.identifier == ownIdentifier; });
    std::sort(applications.begin(), applications.end(), [](const auto& a, const auto& b) {
        return platform::compareStringsNaturally(a.name, b.name) < 0;
    });
    return applications;
}

QIcon iconOf(const ApplicationEntry& entry) {
    return QDir::isAbsolutePath(entry.iconName) ? QIcon(entry.iconName)
                                                : QIcon::fromTheme(entry.iconName);
}

}  // namespace

QMenu* addOpenWithMenu(QMenu& menu, const QStringList& paths,
                       std::function<void(const QString& identifier)> open) {
    const Applications applications = commonApplications(paths);
    if (applications.empty()) {
        return nullptr;
    }
    QMenu* submenu = menu.addMenu(translated("Open with"));
    for (const ApplicationEntry& entry : applications) {
        const bool isAmbiguous =
            std::count_if(applications.begin(), applications.end(),
                          [&](const auto& other) { return other.name == entry.name; }) > 1;
        const QString title =
            isAmbiguous ? entry.name + u" \u2013 "_s + entry.identifier : entry.name;
        QAction* item = submenu->addAction(iconOf(entry), menuText(title));
        QObject::connect(item, &QAction::triggered, submenu,
                         [open, identifier = entry.identifier] { open(identifier); });
    }
    return submenu;
}

}  // namespace ui
