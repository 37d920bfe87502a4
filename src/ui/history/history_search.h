#pragma once

#include <QStringList>
#include <QWidget>

#include "platform/base/user_defaults.h"

class QKeyEvent;
class QLineEdit;

namespace ui {

class ScopeBar;

/// The search field of the History menu, and below it, while there is something in the field, the
/// choice of what the search looks at.
class HistorySearch final : public QWidget {
    Q_OBJECT

public:
    HistorySearch(platform::UserDefaults& defaults, QWidget* parent);

    [[nodiscard]] QStringList terms() const;
    /// With nothing to search in, the field is emptied and cannot be used.
    void setHasHistory(bool has);
    /// What is typed next replaces it.
    void selectText();
    /// Puts what was typed elsewhere into the field. False: it is no text, or there is nothing to
    /// search in.
    bool type(QKeyEvent& event);

Q_SIGNALS:
    void searchChanged();

private:
    void showScopeBarIfSearching();

    platform::UserDefaults& defaults_;
    QLineEdit* historySearchField;
    ScopeBar* historySearchScopeBar;
};

}  // namespace ui
