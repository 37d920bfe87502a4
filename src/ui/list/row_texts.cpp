#include "ui/list/row_texts.h"

#include <QLocale>

#include "app/failures/failure_sentence.h"
#include "app/rows/status_text.h"
#include "engine/context.h"
#include "engine/lifecycle/download.h"
#include "engine/settings.h"
#include "links/text/typography.h"
#include "platform/base/user_defaults.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

QString dateLine(const QDateTime& added) {
    const QLocale locale;
    const QString day = locale.toString(added.toLocalTime().date(), QLocale::LongFormat);
    if (day == locale.toString(QDate::currentDate(), QLocale::LongFormat)) {
        return translated("Added earlier today");
    }
    return translated("Added on %@").replace(u"%@"_s, day);
}

}  // namespace

QString rowToolTip(const app::StatusTexts& texts, engine::DQDownload& download) {
    const QString bullet = links::spacedBulletString();
    QString text = download.originalURLString() + u'\n' + bullet +
                   texts.statusDescriptionWithLiveDetails(download, false) + u'\n' + bullet +
                   dateLine(download.date());
    if (const QString sentence = app::failureSentence(download); !sentence.isEmpty()) {
        text += u'\n' + bullet + sentence;
    }
    const bool inBundle =
        download.context().defaults.get(engine::settings::intermediatesLocation) > 0;
    if (download.status() == engine::DQDownloadStatusDownloading && inBundle) {
        text += u'\n' + bullet + translated("Double-click to reveal target file");
    }
    return text;
}

QString accessibleRowText(const app::StatusTexts& texts, engine::DQDownload& download) {
    const QString text =
        download.displayName() + u", "_s + texts.statusDescriptionWithLiveDetails(download, false);
    const QString sentence = app::failureSentence(download);
    return sentence.isEmpty() ? text : text + u", "_s + sentence;
}

}  // namespace ui
