#include "ui/toolbar/toolbar_editor.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/art/icons.h"
#include "ui/text.h"
#include "ui/toolbar/toolbar_layout.h"

namespace ui {
namespace {

constexpr int identifierRole = Qt::UserRole;
constexpr int iconSize = 20;

QListWidgetItem* listItem(const QString& identifier) {
    auto* item = new QListWidgetItem(ToolbarLayout::label(identifier));
    item->setData(identifierRole, identifier);
    const QString symbol = ToolbarLayout::symbol(identifier);
    QPixmap blank(iconSize, iconSize);
    blank.fill(Qt::transparent);
    item->setIcon(symbol.isEmpty() ? QIcon(blank) : symbolIcon(symbol));
    return item;
}

QListWidget* itemList(const QString& title, QGridLayout& grid, int column) {
    auto* list = new QListWidget;
    auto* label = new QLabel(title);
    label->setBuddy(list);
    list->setIconSize({iconSize, iconSize});
    list->setAccessibleName(title);
    grid.addWidget(label, 0, column);
    grid.addWidget(list, 1, column);
    return list;
}

}  // namespace

ToolbarEditor::ToolbarEditor(ToolbarLayout& layout, QWidget* parent)
    : QDialog(parent), layout_(layout) {
    setWindowTitle(translated("Customize Toolbar"));
    auto* grid = new QGridLayout;
    available_ = itemList(translated("Available items:"), *grid, 0);
    shown_ = itemList(translated("In the toolbar:"), *grid, 2);
    // Rows are also put in order by the mouse.
    shown_->setDragDropMode(QAbstractItemView::InternalMove);

    auto* middle = new QVBoxLayout;
    const auto button = [&](const char* title, auto&& act) {
        auto* made = new QPushButton(translated(title), this);
        made->setAutoDefault(false);
        connect(made, &QPushButton::clicked, this, act);
        middle->addWidget(made);
        return made;
    };
    middle->addStretch();
    add_ = button(translatable("&Add"), [this] { add(); });
    remove_ = button(translatable("&Remove"), [this] { remove(); });
    middle->addSpacing(12);
    up_ = button(translatable("Move &Up"), [this] { move(-1); });
    down_ = button(translatable("Move &Down"), [this] { move(1); });
    middle->addStretch();
    grid->addLayout(middle, 1, 1);

    auto* buttons =
        new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::RestoreDefaults, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    QPushButton* restore = buttons->button(QDialogButtonBox::RestoreDefaults);
    restore->setAutoDefault(false);
    connect(restore, &QPushButton::clicked, this, [this] { store(layout_.defaultItems(), 0); });
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    auto* whole = new QVBoxLayout(this);
    whole->addLayout(grid);
    whole->addWidget(buttons);

    connect(available_, &QListWidget::itemDoubleClicked, this, [this] { add(); });
    connect(shown_, &QListWidget::itemDoubleClicked, this, [this] { remove(); });
    connect(available_, &QListWidget::currentRowChanged, this, &ToolbarEditor::updateButtons);
    connect(shown_, &QListWidget::currentRowChanged, this, &ToolbarEditor::updateButtons);
    connect(
        shown_->model(), &QAbstractItemModel::rowsMoved, this,
        [this] { store(shownItems(), shown_->currentRow()); }, Qt::QueuedConnection);
    fill(layout_.items(), 0);
    // Every item can get into either of the two.
    const int width = std::max(available_->sizeHintForColumn(0), shown_->sizeHintForColumn(0));
    for (QListWidget* list : {available_, shown_}) {
        list->setMinimumWidth(width + list->verticalScrollBar()->sizeHint().width() + iconSize);
    }
    QWidget* before = available_;
    for (QWidget* next :
         std::initializer_list<QWidget*>{add_, remove_, up_, down_, shown_, buttons}) {
        setTabOrder(before, next);
        before = next;
    }
    available_->setFocus();
}

void ToolbarEditor::fill(const QStringList& items, int current) {
    const int available = std::max(0, available_->currentRow());
    available_->clear();
    shown_->clear();
    for (const QString& item : layout_.allowedItems()) {
        if (ToolbarLayout::isRepeatable(item) || !items.contains(item)) {
            available_->addItem(listItem(item));
        }
    }
    for (const QString& item : items) {
        shown_->addItem(listItem(item));
    }
    available_->setCurrentRow(std::min(available, available_->count() - 1));
    shown_->setCurrentRow(std::min(current, shown_->count() - 1));
    updateButtons();
}

QStringList ToolbarEditor::shownItems() const {
    QStringList items;
    for (int row = 0; row < shown_->count(); ++row) {
        items.append(shown_->item(row)->data(identifierRole).toString());
    }
    return items;
}

void ToolbarEditor::store(const QStringList& items, int current) {
    layout_.setItems(items);
    fill(items, current);
    Q_EMIT changed();
}

void ToolbarEditor::add() {
    if (const QListWidgetItem* item = available_->currentItem()) {
        QStringList items = shownItems();
        const int row = shown_->currentRow() + 1;
        items.insert(row, item->data(identifierRole).toString());
        store(items, row);
    }
}

void ToolbarEditor::remove() {
    if (const int row = shown_->currentRow(); row >= 0) {
        QStringList items = shownItems();
        items.removeAt(row);
        store(items, row);
    }
}

void ToolbarEditor::move(int step) {
    const int row = shown_->currentRow();
    QStringList items = shownItems();
    items.move(row, row + step);
    store(items, row + step);
}

void ToolbarEditor::updateButtons() {
    const int row = shown_->currentRow();
    add_->setEnabled(available_->currentRow() >= 0);
    remove_->setEnabled(row >= 0);
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row + 1 < shown_->count());
}

}  // namespace ui
