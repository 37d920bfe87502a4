#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "help/help_manager.h"

class QLabel;
class QLineEdit;
class QStringListModel;
class QToolButton;

namespace platform {
class UserDefaults;
}

namespace ui {

class ContentsMenu;
class HelpBrowser;
class QuickAccessBar;

/// The manual: a page with its neighbours, the contents, quick access and a search.
class HelpWindow final : public QWidget {
    Q_OBJECT

public:
    /// `keyTables` answers the keys of all commands in HTML.
    HelpWindow(platform::UserDefaults& defaults, std::function<QString()> keyTables,
               QWidget* parent);
    ~HelpWindow() override;

    /// Without a page, and unless forced, a window that is there is only brought to the front.
    /// False: there is no such page.
    bool openPage(const QString& page, const QString& fragment, bool force);
    /// `highlightWords` are marked in the page.
    bool openPageAtRelativePath(const QString& path, const QString& fragment,
                                const QStringList& highlightWords);
    /// "page.html#name"
    bool openPageAtRelativePathWithFragment(const QString& target);
    [[nodiscard]] QString currentRelativePath();
    /// The keyboard goes to the search field.
    void beginSearch();

private:
    QWidget* makeToolbar();
    QWidget* makeHeader();
    void addKeys();
    void follow(const QUrl& link);
    void followDefaultLink(const QString& link);
    void suggest(const QString& query);
    void selectSearchSuggestion(const QString& title);
    void setCurrentPageRepresentation(const QString& path);
    void showNeighbour(QToolButton& button, const help::HelpPage* page);

    platform::UserDefaults& defaults_;
    help::DQHelpManager manager_;
    HelpBrowser* browser_;
    ContentsMenu* contents_;
    QuickAccessBar* quickAccess_;
    QLabel* pageTitleField = nullptr;
    QToolButton* previousPageButton = nullptr;
    QToolButton* nextPageButton = nullptr;
    QLineEdit* searchField = nullptr;
    QStringListModel* suggestions_;
    QString query_;  ///< What the suggestions are for; one that is chosen replaces the text.
};

/// Brings up the manual, of which there is one window, where the reader was or at its first page.
HelpWindow& showHelp(QWidget& window, platform::UserDefaults& defaults,
                     std::function<QString()> keyTables);

}  // namespace ui
