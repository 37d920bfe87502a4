#include "ui/list/row_texts.h"

#include <QLocale>

#include "app/failures/failure_sentence.h"
#include "app/rows/row_actions.h"
#include "app/rows/running_figures.h"
#include "app/rows/status_text.h"
#include "engine/context.h"
#include "engine/lifecycle/download.h"
#include "engine/settings.h"
#include "links/format/byte_counts.h"
#include "links/text/typography.h"
#include "platform/base/user_defaults.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

/// In characters.
constexpr qsizetype widestToolTip = 60;

QString dateLine(const QDateTime& added) {
    const QLocale locale;
    const QString day = locale.toString(added.toLocalTime().date(), QLocale::LongFormat);
    if (day == locale.toString(QDate::currentDate(), QLocale::LongFormat)) {
        return translated("Added earlier today");
    }
    return translated("Added on %@").replace(u"%@"_s, day);
}

/// Without a known length there is no percentage to tell.
QString stateText(const app::StatusTexts& texts, engine::DQDownload& download) {
    const bool isEndless = download.status() == engine::DQDownloadStatusDownloading &&
                           !download.figures().isLengthKnown;
    return isEndless
               ? links::stringWithDashesForHyphens(texts.downloadProgressDescription(download))
               : texts.statusDescriptionWithLiveDetails(download, false);
}

QString troubleText(engine::DQDownload& download) {
    const QString sentence = app::failureSentence(download);
    return sentence.isEmpty() ? app::refusalSentence(download) : sentence;
}

}  // namespace

QString rowToolTip(const app::StatusTexts& texts, engine::DQDownload& download) {
    const QString bullet = links::spacedBulletString();
    QString text = download.originalURLString() + u'\n' + bullet + stateText(texts, download) +
                   u'\n' + bullet + dateLine(download.date());
    if (const QString sentence = troubleText(download); !sentence.isEmpty()) {
        text += u'\n' + bullet + sentence;
    }
    const bool inBundle =
        download.context().defaults.get(engine::settings::intermediatesLocation) > 0;
    if (download.status() == engine::DQDownloadStatusDownloading && inBundle) {
        text += u'\n' + bullet + translated("Double-click to reveal target file");
    }
    return wrapped(text, widestToolTip);
}

QString actionToolTip(const engine::DQDownload& download, unsigned index) {
    const qint64 held = app::heldBytes(download);
    const auto size = [held] { return links::fileSizeText(held); };
    if (index == engine::DQDownloadActionRemove) {
        if (download.status() == engine::DQDownloadStatusDone) {
            return translated("Remove from the list, keeps the file");
        }
        return held > 0 ? translated("Remove, deletes %@ when Orlop quits").replace(u"%@"_s, size())
                        : translated("Remove");
    }
    switch (app::primaryAction(download)) {
        case app::PrimaryAction::Start:
            return held > 0 ? translated("Go on after %@").replace(u"%@"_s, size())
                            : translated("Start");
        case app::PrimaryAction::TryAgain:
            return held > 0 ? translated("Try again, goes on after %@").replace(u"%@"_s, size())
                            : translated("Try again");
        case app::PrimaryAction::Reveal:
            return download.context().defaults.get(engine::settings::revealByLaunching)
                       ? translated("Open")
                       : translated("Show in Folder");
        case app::PrimaryAction::Pause:
            break;
    }
    return translated("Pause");
}

QString wrapped(const QString& text, qsizetype columns) {
    QStringList lines;
    for (QString line : text.split(u'\n')) {
        while (line.size() > columns) {
            const qsizetype blank = line.lastIndexOf(u' ', columns);
            // An address has none.
            const qsizetype end = blank > columns / 2 ? blank : columns;
            lines.append(line.first(end));
            line.remove(0, end == blank ? end + 1 : end);
        }
        lines.append(line);
    }
    return lines.join(u'\n');
}

QString accessibleRowText(const app::StatusTexts& texts, engine::DQDownload& download) {
    const QString text = download.displayName() + u", "_s + stateText(texts, download);
    const QString sentence = troubleText(download);
    return sentence.isEmpty() ? text : text + u", "_s + sentence;
}

}  // namespace ui
