#include "app/queue/missing_volumes.h"

#include <utility>

#include "engine/lifecycle/download.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

QString sentence(const QString& volume, const QStringList& names) {
    return names.size() == 1
               ? links::filledFormat(
                     links::localized("%@ cannot go on: what has come of it lies on %@, which is "
                                      "not available."),
                     {names.first(), volume})
               : links::filledFormat(
                     links::localized("%@ downloads cannot go on: what has come of them lies on "
                                      "%@, which is not available."),
                     {QString::number(names.size()), volume});
}

}  // namespace

MissingVolumes::MissingVolumes(platform::RunLoop& loop, TellOne tellOne, TellAll tellAll)
    : tellOne_(std::move(tellOne)), tellAll_(std::move(tellAll)), telling_(loop) {}

void MissingVolumes::note(const engine::DQDownload& download) {
    const QString volume = platform::volumePath(download.intermediateDownloadTargetPath());
    platform::log(u"%1 waits for the volume %2"_s.arg(download.description(), volume),
                  platform::LogLevel::Warning);
    waiting_[volume].append(download.displayName());
    tellOne_(sentence(volume, {download.displayName()}));
    telling_.startUnlessActive(0, [this] { tellAll(); });
}

void MissingVolumes::tellAll() {
    const auto waiting = std::exchange(waiting_, {});
    QStringList sentences;
    for (auto volume = waiting.cbegin(); volume != waiting.cend(); ++volume) {
        sentences.append(sentence(volume.key(), volume.value()));
    }
    tellAll_(sentences);
}

}  // namespace app
