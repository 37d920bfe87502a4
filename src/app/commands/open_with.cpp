#include "app/commands/open_with.h"

#include <algorithm>

#include "app/rules/rule_applications.h"
#include "links/paths/path_components.h"
#include "links/text/localization.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using platform::ApplicationEntry;

namespace {

const auto ownIdentifier = u"com.tarnworks.Orlop.desktop"_s;

std::vector<ApplicationEntry> applicationsFor(const QStringList& paths) {
    QStringList extensions;
    for (const QString& path : paths) {
        extensions.append(links::pathExtension(path));
    }
    std::vector<ApplicationEntry> applications = applicationsForExtensions(extensions);
    std::erase_if(applications,
                  [](const ApplicationEntry& entry) { return entry.identifier == ownIdentifier; });
    return applications;
}

/// Its name, and for one of several of that name which one it is.
QString titleAmong(const std::vector<ApplicationEntry>& applications,
                   const ApplicationEntry& application) {
    const auto namesakes =
        std::count_if(applications.begin(), applications.end(),
                      [&](const auto& other) { return other.name == application.name; });
    return namesakes > 1 ? application.name + u" \u2013 "_s + application.identifier
                         : application.name;
}

}  // namespace

void appendOpenWith(Menu& menu, const QStringList& paths,
                    const std::function<void(const QString& identifier)>& open) {
    const std::vector<ApplicationEntry> applications = applicationsFor(paths);
    Menu items;
    for (const ApplicationEntry& application : applications) {
        MenuItem item = action(literalTitle(titleAmong(applications, application)),
                               [open, id = application.identifier] { open(id); });
        item.icon = {MenuIcon::Kind::Application, application.iconName};
        items.push_back(std::move(item));
    }
    if (!items.empty()) {
        menu.push_back(submenu(links::localized("Open with"), std::move(items)));
    }
}

}  // namespace app
