#include "ui/history/history_search.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

#include "app/settings.h"
#include "ui/art/icons.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

HistorySearch::HistorySearch(platform::UserDefaults& defaults, QWidget* parent)
    : QWidget(parent),
      defaults_(defaults),
      historySearchField(new QLineEdit(this)),
      historySearchScopeBar(new QWidget(this)) {
    historySearchField->setObjectName(u"historySearchField"_s);
    historySearchField->setPlaceholderText(translated("Search"));
    historySearchField->setAccessibleName(translated("Search"));
    historySearchField->setClearButtonEnabled(true);
    historySearchField->addAction(symbolIcon(u"filter"_s), QLineEdit::LeadingPosition);
    makeScopeBar();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(6, 4, 6, 4);
    column->setSpacing(4);
    column->addWidget(historySearchField);
    column->addWidget(historySearchScopeBar);
    setFocusProxy(historySearchField);
    showScopeBarIfSearching();
    connect(historySearchField, &QLineEdit::textChanged, this, [this] {
        showScopeBarIfSearching();
        Q_EMIT searchChanged();
    });
}

void HistorySearch::makeScopeBar() {
    auto* row = new QHBoxLayout(historySearchScopeBar);
    row->setContentsMargins(0, 0, 0, 0);
    auto* group = new QButtonGroup(historySearchScopeBar);
    const bool checksURL = defaults_.get(app::settings::historySearchCriterion) == u"URL"_s;
    for (const char* scope : {"Name", "URL"}) {
        auto* button = new QToolButton(historySearchScopeBar);
        const QString criterion = QString::fromLatin1(scope);
        button->setObjectName(criterion);
        button->setText(translated(scope));
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setChecked(checksURL == (criterion == u"URL"_s));
        group->addButton(button);
        row->addWidget(button);
        connect(button, &QToolButton::clicked, this, [this, criterion] {
            defaults_.set(app::settings::historySearchCriterion, criterion);
            Q_EMIT searchChanged();
        });
    }
    row->addStretch();
}

void HistorySearch::showScopeBarIfSearching() {
    historySearchScopeBar->setVisible(!terms().isEmpty());
}

QStringList HistorySearch::terms() const {
    return historySearchField->text().simplified().split(u' ', Qt::SkipEmptyParts);
}

void HistorySearch::setHasHistory(bool has) {
    if (!has) {
        historySearchField->clear();
    }
    historySearchField->setEnabled(has);
}

}  // namespace ui
