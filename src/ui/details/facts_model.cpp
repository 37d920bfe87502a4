#include "ui/details/facts_model.h"

#include <QGuiApplication>
#include <QPalette>

#include "ui/art/theme.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

enum FactColumn { LabelColumn, ValueColumn, NumberOfFactColumns };

bool haveSameLabels(const std::vector<app::Fact>& a, const std::vector<app::Fact>& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const app::Fact& one, const app::Fact& other) { return one.label == other.label; });
}

}  // namespace

void FactsModel::setFacts(std::vector<app::Fact> facts) {
    if (!haveSameLabels(facts, facts_)) {
        beginResetModel();
        facts_ = std::move(facts);
        endResetModel();
        return;
    }
    for (std::size_t row = 0; row < facts.size(); ++row) {
        if (facts_[row] == facts[row])
            continue;
        facts_[row] = std::move(facts[row]);
        const QModelIndex changed = index(static_cast<int>(row), ValueColumn);
        Q_EMIT dataChanged(changed, changed);
    }
}

int FactsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(facts_.size());
}

int FactsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : NumberOfFactColumns;
}

QVariant FactsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const app::Fact& fact = facts_[static_cast<std::size_t>(index.row())];
    const bool isLabel = index.column() == LabelColumn;
    switch (role) {
        case Qt::DisplayRole:
            return isLabel ? fact.label : isolatedPlace(breakable(fact.value));
        case Qt::AccessibleTextRole:
            return isLabel ? fact.label : fact.label + u": "_s + fact.value;
        case Qt::TextAlignmentRole:
            return QVariant(Qt::AlignLeading | Qt::AlignTop);
        case Qt::ForegroundRole:
            return isLabel ? QVariant(noteColor(QGuiApplication::palette())) : QVariant();
        default:
            return {};
    }
}

QVariant FactsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == LabelColumn ? translated("What") : translated("How it stands");
}

QString isolatedPlace(const QString& text) {
    constexpr QChar leftToRightIsolate(0x2066), popDirectionalIsolate(0x2069);
    const bool isPlace = text.startsWith(u'~') || text.startsWith(u'/') || text.contains(u":/"_s);
    return isPlace ? leftToRightIsolate + text + popDirectionalIsolate : text;
}

QString breakable(const QString& text) {
    constexpr int longestRun = 16;
    constexpr QChar zeroWidthSpace(0x200B);
    QString result;
    int run = 0;
    for (const QChar character : text) {
        result += character;
        run = character.isSpace() ? 0 : run + 1;
        const bool isPunctuation = u"/?&=._-;,"_s.contains(character) && run > 1;
        if ((isPunctuation || run >= longestRun) && !character.isHighSurrogate()) {
            result += zeroWidthSpace;
            run = 0;
        }
    }
    return result;
}

}  // namespace ui
