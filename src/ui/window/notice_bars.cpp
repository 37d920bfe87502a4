#include "ui/window/notice_bars.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include "ui/art/hairline.h"
#include "ui/art/icons.h"
#include "ui/art/theme.h"
#include "ui/text.h"

namespace ui {
namespace {

class Bar final : public QWidget {
public:
    Bar(Qt::Edge edge, QWidget* parent) : QWidget(parent), edge_(edge) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().toolTipBase());
        const QRect line = edge_ == Qt::TopEdge ? rect() : QRect(0, 0, width(), 1);
        paintHairlineBelow(painter, line, separatorColor(palette()));
    }

private:
    const Qt::Edge edge_;
};

}  // namespace

NoticeBars::NoticeBars(Qt::Edge edge, QWidget* parent) : QWidget(parent), edge_(edge) {
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
    if (notice.duration.count() > 0) {
        takeAfter(notice.duration, notice.matter);
    }
}

void NoticeBars::takeAfter(std::chrono::milliseconds duration, const QString& matter) {
    QWidget* bar = bars_.value(matter);
    QTimer::singleShot(duration, bar, [this, bar, matter] {
        if (bar->underMouse()) {
            takeAfter(std::chrono::seconds(1), matter);
        } else if (bars_.value(matter) == bar) {
            take(matter);
        }
    });
}

void NoticeBars::take(const QString& matter) {
    if (QWidget* bar = bars_.take(matter)) {
        bar->hide();
        bar->deleteLater();
    }
    setVisible(!bars_.isEmpty());
}

QWidget* NoticeBars::makeBar(const Notice& notice) {
    auto* bar = new Bar(edge_, this);
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
    close->setIcon(symbolIcon(QStringLiteral("DQCancel")));
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
