#include "ui/rules/rule_list.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/settings.h"
#include "links/paths/path_display.h"
#include "platform/files/files.h"
#include "platform/session/applications.h"
#include "ui/art/icons.h"
#include "ui/rules/folder_selector.h"
#include "ui/rules/rule_editor.h"
#include "ui/settings/settings_binder.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

enum Column { Hosts, Extensions, Folder, Application };
constexpr int iconSize = 16;

}  // namespace

RuleList::RuleList(app::RuleBook& rules, SettingsBinder& binder, QWidget* parent)
    : QWidget(parent), rules_(rules), binder_(binder), tree_(new QTreeWidget(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tree_);
    makeTree();
    makeButtons();
    setFocusProxy(tree_);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    binder.follow({app::settings::rules.name()}, this, [this] { fill(); });
}

void RuleList::makeTree() {
    tree_->setObjectName(app::settings::rules.name());
    tree_->setAccessibleName(translated("Rules"));
    tree_->setHeaderLabels({translated("Hosts"), translated("Extensions"), translated("Folder"),
                            translated("Application")});
    tree_->setRootIsDecorated(false);
    tree_->setUniformRowHeights(true);
    tree_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tree_->setIconSize({iconSize, iconSize});
    tree_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tree_->setMinimumHeight(fontMetrics().lineSpacing() * 8);
    tree_->header()->setStretchLastSection(false);
    tree_->header()->setSectionResizeMode(Hosts, QHeaderView::Stretch);
    tree_->setColumnWidth(Extensions, 85);
    tree_->setColumnWidth(Folder, 105);
    tree_->setColumnWidth(Application, 90);
    connect(tree_, &QTreeWidget::itemSelectionChanged, this, &RuleList::updateButtons);
    connect(tree_, &QTreeWidget::itemActivated, this, &RuleList::edit);
    auto* remove = new QShortcut(QKeySequence::Delete, tree_, nullptr, nullptr,
                                 Qt::WidgetWithChildrenShortcut);
    connect(remove, &QShortcut::activated, this, &RuleList::remove);
}

void RuleList::makeButtons() {
    auto* row = new QHBoxLayout;
    const auto add = [&](const char* title, void (RuleList::*act)()) {
        auto* button = new QPushButton(translated(title), this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, act);
        row->addWidget(button);
        return button;
    };
    add("De&fine Rule...", &RuleList::define);
    edit_ = add("Ed&it...", &RuleList::edit);
    duplicate_ = add("Dupli&cate...", &RuleList::duplicate);
    remove_ = add("Re&move", &RuleList::remove);
    row->addStretch();
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void RuleList::fill() {
    const QList<QVariantMap> selected = selectedSpecialCases();
    tree_->clear();
    for (const QVariant& element : rules_.specialCases()) {
        const QVariantMap specialCase = element.toMap();
        addRow(specialCase, selected.contains(specialCase));
    }
    updateButtons();
}

void RuleList::addRow(const QVariantMap& specialCase, bool isSelected) {
    const app::Rule rule = app::ruleFromDictionary(specialCase);
    const auto joined = [](const QStringList& entries) {
        return entries.isEmpty() ? translated("Any") : entries.join(u", "_s);
    };
    auto* item = new QTreeWidgetItem(tree_, {joined(rule.hosts), joined(rule.extensions)});
    item->setData(0, Qt::UserRole, specialCase);
    item->setIcon(Hosts, rule.extensions.isEmpty()
                             ? itemIcon(u"link"_s)
                             : QIcon(fileTypePixmap(rule.extensions.front().toLower(), iconSize,
                                                    devicePixelRatioF())));
    if (!rule.downloadsFolder.isEmpty()) {
        const QString path = platform::expandTilde(rule.downloadsFolder);
        item->setText(Folder, links::displayFilename(path));
        item->setIcon(Folder, folderIcon());
        item->setToolTip(Folder, path);
    }
    if (const auto application = platform::applicationWithIdentifier(rule.application)) {
        item->setText(Application, application->name);
        item->setIcon(Application, applicationIconNamed(application->iconName));
    } else if (rule.downloadsFolder.isEmpty()) {
        item->setText(Folder, translated("Ineffective"));
    }
    for (const Column column : {Hosts, Extensions}) {
        item->setToolTip(column, item->text(column));
    }
    item->setSelected(isSelected);
}

void RuleList::updateButtons() {
    const qsizetype count = tree_->selectedItems().size();
    edit_->setEnabled(count == 1);
    duplicate_->setEnabled(count == 1);
    remove_->setEnabled(count > 0);
}

QList<QVariantMap> RuleList::selectedSpecialCases() const {
    QList<QVariantMap> specialCases;
    for (const QTreeWidgetItem* item : tree_->selectedItems()) {
        specialCases.append(item->data(0, Qt::UserRole).toMap());
    }
    return specialCases;
}

void RuleList::define() {
    defineOrEditSpecialCase({}, rules_, binder_.defaults(), window());
    fill();
}

void RuleList::edit() {
    const QList<QVariantMap> selected = selectedSpecialCases();
    if (selected.size() == 1) {
        defineOrEditSpecialCase(selected.front(), rules_, binder_.defaults(), window());
        fill();
    }
}

/// Two equal rules would make no sense, so the copy is there only once it has been edited.
void RuleList::duplicate() {
    const QList<QVariantMap> selected = selectedSpecialCases();
    if (selected.size() != 1) {
        return;
    }
    RuleEditor editor(RuleEditor::Purpose::Define, app::ruleFromDictionary(selected.front()),
                      rules_, binder_.defaults(), window());
    if (editor.exec() == QDialog::Accepted) {
        rules_.addSpecialCase(editor.rule());
        fill();
    }
}

void RuleList::remove() {
    for (const QVariantMap& specialCase : selectedSpecialCases()) {
        rules_.removeSpecialCase(specialCase);
    }
    fill();
}

}  // namespace ui
