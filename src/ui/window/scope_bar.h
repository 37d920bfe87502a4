#pragma once

#include <QButtonGroup>
#include <QWidget>

namespace ui {

/// A line with a label and a few buttons, of which one is down: what a search looks at.
class ScopeBar final : public QWidget {
    Q_OBJECT

public:
    struct Item {
        QString identifier;
        QString title;
    };
    ScopeBar(const QString& label, const QList<Item>& items, QWidget* parent);

    /// Does not tell of it. An unknown one selects the first item.
    void select(const QString& identifier);

Q_SIGNALS:
    /// By the user.
    void selected(const QString& identifier);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QButtonGroup buttons_;
};

}  // namespace ui
