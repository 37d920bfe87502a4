#include "ui/list/empty_list_offers.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>

#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

EmptyListOffers::EmptyListOffers(QWidget* parent) : QWidget(parent) {
    setObjectName(u"emptyListOffers"_s);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(14);
    const QString keys = QKeySequence(QKeySequence::Paste).toString(QKeySequence::NativeText);
    auto* hint = new QLabel(translated("or paste them with %@").replace(u"%@"_s, keys), this);
    hint->setAlignment(Qt::AlignCenter);
    layout->addWidget(hint);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    const auto add = [&](const QString& title, auto signal) {
        auto* button = new QPushButton(title, this);
        button->setAutoDefault(false);
        buttons->addWidget(button);
        connect(button, &QPushButton::clicked, this, signal);
    };
    buttons->addStretch(1);
    add(translated("Paste"), &EmptyListOffers::pasteWanted);
    add(translated("Add Addresses..."), &EmptyListOffers::addWanted);
    buttons->addStretch(1);
    layout->addLayout(buttons);
}

}  // namespace ui
