#include "app/details/attempt_log.h"

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

}  // namespace

void AttemptLog::note(const engine::StatusChange& change) {
    const QString address = change.download.originalURLString();
    QString text = troubleText(change);
    if (text.isEmpty() && change.cause == StatusCause::Started && attempts_.contains(address))
        text = localized("Tried again");
    if (!text.isEmpty())
        add(address, {change.download.context().wallNow(), text});
}

void AttemptLog::noteNewAddress(const engine::DQDownload& download, const QString& address) {
    std::vector<Attempt> past = attempts_.take(download.originalURLString());
    if (!past.empty())
        attempts_.insert(address, std::move(past));
    add(address, {download.context().wallNow(), localized("Address changed")});
}

std::vector<Attempt> AttemptLog::attempts(const engine::DQDownload& download) const {
    return attempts_.value(download.originalURLString());
}

void AttemptLog::add(const QString& address, const Attempt& attempt) {
    constexpr std::size_t mostKept = 20;
    constexpr qsizetype mostAddresses = 1000;
    if (attempts_.size() >= mostAddresses && !attempts_.contains(address))
        attempts_.erase(attempts_.begin());
    std::vector<Attempt>& list = attempts_[address];
    list.push_back(attempt);
    if (list.size() > mostKept)
        list.erase(list.begin());
}

}  // namespace app
