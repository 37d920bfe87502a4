#include "ui/history/history_search.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

#include "app/settings.h"
#include "ui/art/icons.h"
#include "ui/text.h"
#include "ui/window/scope_bar.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

HistorySearch::HistorySearch(platform::UserDefaults& defaults, QWidget* parent)
    : QWidget(parent),
      defaults_(defaults),
      historySearchField(new QLineEdit(this)),
      historySearchScopeBar(
          new ScopeBar(translated("Search:"),
                       {{u"Name"_s, translated("Name")}, {u"URL"_s, translated("URL")}}, this)) {
    historySearchField->setObjectName(u"historySearchField"_s);
    historySearchField->setPlaceholderText(translated("Search"));
    historySearchField->setAccessibleName(translated("Search"));
    historySearchField->setClearButtonEnabled(true);
    historySearchField->addAction(symbolIcon(u"filter"_s), QLineEdit::LeadingPosition);
    historySearchScopeBar->select(defaults_.get(app::settings::historySearchCriterion));
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
    connect(historySearchScopeBar, &ScopeBar::selected, this, [this](const QString& criterion) {
        defaults_.set(app::settings::historySearchCriterion, criterion);
        Q_EMIT searchChanged();
    });
}

bool HistorySearch::type(QKeyEvent& event) {
    const bool isText = !event.text().isEmpty() && event.text().front().isPrint() &&
                        !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (!isText || !historySearchField->isEnabled() || historySearchField->hasFocus()) {
        return false;
    }
    historySearchField->setFocus();
    QCoreApplication::sendEvent(historySearchField, &event);
    return true;
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

void HistorySearch::selectText() {
    historySearchField->selectAll();
}

}  // namespace ui
