#include "ui/window/notice_bars.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include "ui/art/hairline.h"
#include "ui/art/theme.h"
#include "ui/text.h"

namespace ui {
namespace {

class Bar final : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().toolTipBase());
        paintHairlineBelow(painter, rect(), separatorColor(palette()));
    }
};

}  // namespace

NoticeBars::NoticeBars(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    hide();
}

void NoticeBars::show(const Notice& notice) {
    take(notice.matter);
    QWidget* bar = makeBar(notice);
    layout()->addWidget(bar);
    bars_.insert(notice.matter, bar);
    setVisible(true);
}

void NoticeBars::take(const QString& matter) {
    if (QWidget* bar = bars_.take(matter)) {
        bar->hide();
        bar->deleteLater();
    }
    setVisible(!bars_.isEmpty());
}

QWidget* NoticeBars::makeBar(const Notice& notice) {
    auto* bar = new Bar(this);
    bar->setObjectName(notice.matter);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(8, 4, 6, 5);
    auto* text = new QLabel(notice.text, bar);
    // A name may look like markup.
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setForegroundRole(QPalette::ToolTipText);
    layout->addWidget(text, 1);
    auto* button = new QPushButton(notice.button, bar);
    layout->addWidget(button);
    auto* close = new QToolButton(bar);
    close->setIcon(style()->standardIcon(QStyle::SP_DockWidgetCloseButton));
    close->setAutoRaise(true);
    close->setFocusPolicy(Qt::TabFocus);
    close->setAccessibleName(translated("Close"));
    layout->addWidget(close);
    connect(button, &QPushButton::clicked, this, [this, matter = notice.matter, act = notice.act] {
        take(matter);
        act();
    });
    connect(close, &QToolButton::clicked, this, [this, matter = notice.matter] { take(matter); });
    return bar;
}

}  // namespace ui
