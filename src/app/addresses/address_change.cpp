#include "app/addresses/address_change.h"

#include "app/main_controller.h"
#include "app/rows/rows.h"
#include "app/rows/running_figures.h"
#include "engine/lifecycle/kept_aside.h"
#include "links/format/byte_counts.h"
#include "links/recognition/text_addresses.h"
#include "links/text/localization.h"

using namespace Qt::Literals::StringLiterals;

namespace app {

using links::filledFormat;
using links::localized;
using Verdict = engine::AddressAnswer::Verdict;

namespace {

QString otherFileSentence(const engine::DQDownload& download, const engine::AddressAnswer& answer) {
    const qint64 wanted = engine::knownFile(download.userSettings()).length;
    const bool haveLengths = wanted > 0 && answer.file.length > 0 && wanted != answer.file.length;
    const QString what =
        haveLengths
            ? filledFormat(localized("There is another file at this address, of %@ in "
                                     "place of %@."),
                           {links::fileSizeText(answer.file.length), links::fileSizeText(wanted)})
            : localized("There is another file at this address.");
    return what + u' ' +
           localized(
               "What has come so far is of no use for it, and stays until the new file is "
               "complete.");
}

}  // namespace

bool canChangeAddress(const engine::DQDownload& download) {
    return !download.isBeingRemoved() &&
           engine::matchesStatusMask(
               download.status(), engine::DQDownloadStatusPaused | engine::DQDownloadStatusAborted);
}

std::optional<platform::Url> webAddressInText(const QString& text) {
    links::TextAddresses addresses(text, false);
    while (const auto found = addresses.next()) {
        const QString scheme = found->address ? found->address->scheme().toLower() : QString();
        if (scheme == u"http" || scheme == u"https")
            return found->address;
    }
    return std::nullopt;
}

QString answerSentence(const engine::DQDownload& download, const engine::AddressAnswer& answer) {
    switch (answer.verdict) {
        case Verdict::SameFile:
            return localized("It is the same file.");
        case Verdict::OtherFile:
            return otherFileSentence(download, answer);
        case Verdict::CannotTell:
            return localized(
                "Nothing tells whether the same file is there. Should it be another "
                "one, it begins anew, and what has come stays until that is complete.");
        case Verdict::NotGiven:
            break;
    }
    return answer.statusCode < 0
               ? localized("Nobody answers at this address.")
               : filledFormat(localized("This address does not give the file out: %@."),
                              {QString::number(answer.statusCode)});
}

void changeAddress(DQMainController& controller, const engine::DownloadPtr& download,
                   const platform::Url& url, const engine::AddressAnswer& answer) {
    engine::DownloadQueue& queue = controller.queue();
    if (!queue.contains(*download) || !canChangeAddress(*download))
        return;
    controller.rows().attempts().noteNewAddress(*download, url.absoluteString());
    const bool isSame = answer.verdict == Verdict::SameFile;
    const bool isOther = answer.verdict == Verdict::OtherFile;
    engine::takeNewAddress(*download, url, isSame ? std::optional(answer.file) : std::nullopt);
    engine::DownloadPtr goesOn = download;
    if (download->status() == engine::DQDownloadStatusAborted) {
        const engine::DownloadQueue::Batch batch(queue);
        goesOn = queue.retry(*download, true);
        if (isOther)
            engine::putPartialDataAside(*goesOn);
        queue.touchBatch();
    } else if (isOther) {
        download->startOverBesidePartialData();
    } else {
        download->addToQueue();
    }
    controller.updateDownloadListAndStatus();
    controller.selectDownloads({goesOn});
    controller.whenSaved([](bool) {});
}

}  // namespace app
