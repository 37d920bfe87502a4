#include "app/details/attempt_log.h"

#include <algorithm>

#include "app/checksums/checksum_texts.h"
#include "app/failures/failure_sentence.h"
#include "engine/context.h"
#include "engine/lifecycle/download.h"
#include "engine/lifecycle/status_change.h"
#include "links/text/localization.h"
#include "links/text/typography.h"

namespace app {

using engine::StatusCause;
using links::localized;

namespace {

QString withStatusCode(const QString& text, const engine::DQDownload& download) {
    const QString code = download.userSettings().string(engine::keys::statusCode);
    return code.isEmpty() ? text : text + links::spacedDashString() + code;
}

QString failureText(const engine::DQDownload& download) {
    if (download.isWrongFile())
        return wrongFileSentence(download);
    if (const QString refusal = refusalSentence(download); !refusal.isEmpty())
        return refusal;
    return withStatusCode(localized("Aborted"), download);
}

/// Empty: it is no trouble.
QString troubleText(const engine::StatusChange& change) {
    switch (change.cause) {
        case StatusCause::Interrupted:
            return change.download.lastError() ? failureSentence(*change.download.lastError(), {})
                                               : QString();
        case StatusCause::PutOff:
            return withStatusCode(localized("The server had no place for it"), change.download);
        case StatusCause::StartedOver:
            return localized("Had to begin anew");
        case StatusCause::Failed:
            return failureText(change.download);
        default:
            return {};
    }
}

constexpr qsizetype mostKept = 10;

void keep(engine::DQDownload& download, const std::vector<Attempt>& attempts) {
    QVariantList kept;
    for (const Attempt& attempt : attempts)
        kept.append(QVariantMap{{engine::keys::attemptDate, attempt.when},
                                {engine::keys::attemptText, attempt.what}});
    download.userSettings().set(engine::keys::attempts, kept.last(std::min(mostKept, kept.size())));
}

/// As they stand in the queue's file, whatever that is.
std::vector<Attempt> keptAttempts(const engine::DQDownload& download) {
    constexpr qsizetype longestText = 500;
    std::vector<Attempt> attempts;
    const QVariantList kept = download.userSettings().value(engine::keys::attempts).toList();
    for (const QVariant& element : kept.first(std::min(mostKept, kept.size()))) {
        const QVariantMap fields = element.toMap();
        const QString text = fields.value(engine::keys::attemptText).toString().left(longestText);
        if (!text.isEmpty())
            attempts.push_back({fields.value(engine::keys::attemptDate).toDateTime(), text});
    }
    return attempts;
}

}  // namespace

void AttemptLog::note(const engine::StatusChange& change) {
    QString text = troubleText(change);
    if (text.isEmpty() && change.cause == StatusCause::Started &&
        !attempts(change.download).empty())
        text = localized("Tried again");
    if (!text.isEmpty())
        add(change.download, change.download.originalURLString(), text);
}

void AttemptLog::noteNewAddress(engine::DQDownload& download, const QString& address) {
    std::vector<Attempt> past = attempts(download);
    attempts_.remove(download.originalURLString());
    attempts_[address] = std::move(past);
    add(download, address, localized("Address changed"));
}

std::vector<Attempt> AttemptLog::attempts(const engine::DQDownload& download) const {
    const auto known = attempts_.constFind(download.originalURLString());
    return known != attempts_.cend() ? *known : keptAttempts(download);
}

void AttemptLog::add(engine::DQDownload& download, const QString& address, const QString& what) {
    constexpr std::size_t mostKnown = 20;
    constexpr qsizetype mostAddresses = 1000;
    if (!attempts_.contains(address)) {
        if (attempts_.size() >= mostAddresses)
            attempts_.erase(attempts_.begin());
        attempts_.insert(address, keptAttempts(download));
    }
    std::vector<Attempt>& list = attempts_[address];
    list.push_back({download.context().wallNow(), what});
    if (list.size() > mostKnown)
        list.erase(list.begin());
    keep(download, list);
}

}  // namespace app
