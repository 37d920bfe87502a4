#include "ui/help/contents_menu.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

QString menuTitle(QString title) {
    return title.replace(u'&', u"&&"_s);
}

}  // namespace

ContentsMenu::ContentsMenu(help::DQHelpManager& manager, bool listsAnchorsInSubmenus,
                           QWidget* parent)
    : QMenu(parent) {
    const auto& pages = manager.pageRepresentations();
    const bool isAlone = pages.size() == 1;
    for (const help::HelpPage& page : pages)
        addPage(page, isAlone, listsAnchorsInSubmenus && !isAlone);
}

void ContentsMenu::addPage(const help::HelpPage& page, bool isAlone, bool usesSubmenus) {
    const bool isStructured = !page.anchors.isEmpty() && (isAlone || usesSubmenus);
    QMenu* menu = this;
    if (usesSubmenus && !page.anchors.isEmpty())
        menu = addMenu(menuTitle(page.title));
    QAction* title = addTarget(*menu, page.title, page.path);
    title->setCheckable(!isAlone);
    if (isStructured)
        menu->addSeparator();
    for (const help::HelpAnchor& anchor : page.anchors)
        addAnchor(*menu, anchor, isStructured);
    if (page.index.endsWith(u'_'))
        addSeparator();
}

void ContentsMenu::addAnchor(QMenu& menu, const help::HelpAnchor& anchor, bool isStructured) {
    const bool isBare = isStructured && anchor.category.isEmpty();
    addTarget(menu, isBare ? anchor.name : u"\u2022 "_s + anchor.name,
              anchor.path + u'#' + anchor.fragment);
    if (isStructured && anchor.fragment.endsWith(u'_'))
        menu.addSeparator();
}

QAction* ContentsMenu::addTarget(QMenu& menu, const QString& title, const QString& target) {
    QAction* action =
        menu.addAction(menuTitle(title), this, [this, target] { Q_EMIT chosen(target); });
    action->setData(target);
    return action;
}

void ContentsMenu::setCurrentPath(const QString& path) {
    for (QAction* action : findChildren<QAction*>()) {
        if (action->isCheckable())
            action->setChecked(action->data().toString() == path);
    }
}

}  // namespace ui
