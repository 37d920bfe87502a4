#include "ui/menus/open_with_menu.h"

#include <QDir>
#include <QIcon>
#include <QMenu>
#include <algorithm>
#include <vector>

#include "app/rules/rule_applications.h"
#include "links/path_components.h"
#include "ui/menus/menu_items.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

using platform::ApplicationEntry;
using Applications = std::vector<ApplicationEntry>;

const auto ownIdentifier = u"com.tarnworks.Orlop.desktop"_s;

Applications applicationsFor(const QStringList& paths) {
    QStringList extensions;
    for (const QString& path : paths) {
        extensions.append(links::pathExtension(path));
    }
    Applications applications = app::applicationsForExtensions(extensions);
    std::erase_if(applications,
                  [](const ApplicationEntry& entry) { return entry.identifier == ownIdentifier; });
    return applications;
}

QIcon iconOf(const ApplicationEntry& entry) {
    return QDir::isAbsolutePath(entry.iconName) ? QIcon(entry.iconName)
                                                : QIcon::fromTheme(entry.iconName);
}

}  // namespace

QMenu* addOpenWithMenu(QMenu& menu, const QStringList& paths,
                       std::function<void(const QString& identifier)> open) {
    const Applications applications = applicationsFor(paths);
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
