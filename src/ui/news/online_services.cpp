#include "ui/news/online_services.h"

#include <QApplication>
#include <QPainter>
#include <QTimer>

#include "app/main_controller.h"
#include "desktop/icon/badge.h"
#include "platform/base/user_defaults.h"
#include "platform/session/workspace.h"
#include "ui/art/icons.h"
#include "ui/news/news_window.h"
#include "ui/text.h"
#include "ui/window/notice_bars.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

const QString newsMatter = u"news"_s;

/// The word in a lozenge, the program's icon beside it.
QIcon newsIcon() {
    constexpr int height = 64;
    const QPixmap icon = applicationIcon().pixmap(height, height);
    const QColor color = QApplication::palette().color(QPalette::Highlight);
    const QImage lozenge = desktop::badgeImage({translated("News"), Qt::white, color});
    QPixmap picture(height, height);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(0, 0, icon);
    painter.drawImage(QRectF(0, height / 2.0, height, height / 2.7), lozenge);
    return picture;
}

}  // namespace

void visitUpdatePage(const desktop::DQSparkleWrapper& updates) {
    const auto page = updates.page();
    if (!page || !platform::openURL(*page)) {
        QApplication::beep();
    }
}

OnlineServices::OnlineServices(app::DQMainController& controller, platform::UserDefaults& defaults,
                               NoticeBars& notices)
    : defaults_(defaults),
      notices_(notices),
      fetcher_(controller.surroundings().loop),
      updates_({defaults, controller.surroundings().loop, fetcher_}, sources_,
               QStringLiteral(ORLOP_VERSION),
               desktop::packageManagerOf(QCoreApplication::applicationFilePath())),
      news_({defaults, controller.surroundings().loop, fetcher_, *this}, sources_.news,
            QStringLiteral(ORLOP_VERSION)) {
    desktop::installSparkleWrapper(&updates_);
    connect(&updates_, &desktop::DQSparkleWrapper::updateFound, this,
            &OnlineServices::tellOfUpdate);
    newsAlertStatusItem.setIcon(newsIcon());
    newsAlertStatusItem.setToolTip(translated("Orlop News"));
    connect(&newsAlertStatusItem, &TrayItem::clicked, this,
            [this] { news_.showNewsFromStatusItem(); });
    connect(&controller, &app::DQMainController::terminated, this,
            [this] { news_.preserveNews(); });
    QTimer::singleShot(0, this, [this] {
        updates_.becomeSparkleDelegate();
        news_.showWaitingNews();
        news_.launchNews(true);
    });
}

OnlineServices::~OnlineServices() {
    desktop::installSparkleWrapper(nullptr);
}

void OnlineServices::tellOfUpdate(const QString& description) {
    notices_.show(
        {u"update"_s, description, translated("Show..."), [this] { visitUpdatePage(updates_); }});
}

NewsWindow& OnlineServices::window() {
    if (!window_) {
        window_ = std::make_unique<NewsWindow>(defaults_);
    }
    return *window_;
}

void OnlineServices::show(const desktop::News& news) {
    window().populateWithNews(news);
    window().setAttribute(Qt::WA_ShowWithoutActivating, false);
    window().show();
    window().raise();
    window().activateWindow();
}

void OnlineServices::showBehind(const desktop::News& news) {
    window().populateWithNews(news);
    window().setAttribute(Qt::WA_ShowWithoutActivating);
    window().show();
    if (QApplication::activeWindow() != nullptr) {
        window().lower();
    }
}

bool OnlineServices::isVisible() const {
    return window_ && window_->isVisible();
}

/// In the desktop's panel, and in the window for desktops without one.
void OnlineServices::setAlertShown(bool shown) {
    newsAlertStatusItem.setEnabled(shown);
    if (shown) {
        notices_.show({newsMatter, translated("There are news of Orlop."), translated("Read"),
                       [this] { news_.showNewsFromStatusItem(); }});
    } else {
        notices_.take(newsMatter);
    }
}

void OnlineServices::beep() {
    QApplication::beep();
}

void OnlineServices::tell(const QString& text) {
    Q_EMIT problem(text);
}

}  // namespace ui
