#include "ui/window/clipboard_watch.h"

#include <QClipboard>
#include <QGuiApplication>
#include <chrono>

#include "app/intake/text_preview.h"
#include "app/main_controller.h"
#include "engine/settings.h"
#include "links/names/file_names.h"
#include "links/settings.h"
#include "platform/base/user_defaults.h"
#include "ui/settings.h"
#include "ui/text.h"
#include "ui/window/notice_bars.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace ui {

namespace {

const QString matter = QStringLiteral("clipboard");

QString offerText(const app::TextPreview& preview, const platform::UserDefaults& defaults) {
    const qsizetype fresh = preview.addresses - preview.known;
    if (fresh > 1)
        return translated("%1 addresses were copied").arg(fresh);
    const bool isNamed = preview.only && !defaults.get(engine::settings::privateDownloading);
    const QString name =
        isNamed ? links::filename(*preview.only, links::plusSignsInNames(defaults)) : QString();
    return name.isEmpty() ? translated("An address was copied")
                          : translated("The address of %1 was copied").arg(name);
}

}  // namespace

ClipboardWatch::ClipboardWatch(app::DQMainController& controller,
                               const platform::UserDefaults& defaults, NoticeBars& notices)
    : controller_(controller), defaults_(defaults), notices_(notices) {
    // A program may put several forms of one thing there, one after the other.
    look_.setSingleShot(true);
    look_.setInterval(300ms);
    connect(&look_, &QTimer::timeout, this, &ClipboardWatch::look);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        if (defaults_.get(settings::watchClipboard))
            look_.start();
    });
    connect(&controller_, &app::DQMainController::downloadsAdded, this,
            &ClipboardWatch::withdrawKnown);
}

void ClipboardWatch::look() {
    constexpr qsizetype longest = 100'000;
    const QClipboard& clipboard = *QGuiApplication::clipboard();
    if (clipboard.ownsClipboard())
        return;
    const QString text = clipboard.text();
    if (text.size() <= longest && text.contains(u"://"_s))
        offer(text);
}

void ClipboardWatch::offer(const QString& text) {
    const app::TextPreview preview = app::textPreview(text, controller_.downloads(), defaults_);
    if (preview.addresses <= preview.known) {
        notices_.take(matter);
        offered_.clear();
        return;
    }
    offered_ = text;
    notices_.show({matter, offerText(preview, defaults_), translated("Download"),
                   [this, text] { controller_.openText(text); }, 60s});
}

/// Who pastes it needs no offer.
void ClipboardWatch::withdrawKnown() {
    if (offered_.isEmpty())
        return;
    const app::TextPreview preview = app::textPreview(offered_, controller_.downloads(), defaults_);
    if (preview.addresses > preview.known)
        return;
    notices_.take(matter);
    offered_.clear();
}

}  // namespace ui
