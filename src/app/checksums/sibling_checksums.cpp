#include "app/checksums/sibling_checksums.h"

#include <QPointer>

#include "app/checksums/checksum_list.h"
#include "app/checksums/verification.h"
#include "app/main_controller.h"
#include "engine/record/user_settings.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace app {

namespace {

QString folderOf(const engine::DQDownload& download) {
    return download.originalURLString()
        .section(u'#', 0, 0)
        .section(u'?', 0, 0)
        .section(u'/', 0, -2);
}

}  // namespace

SiblingChecksums::SiblingChecksums(DQMainController& controller) : controller_(controller) {
    connect(&controller, &DQMainController::downloadEnded, this, &SiblingChecksums::noteEnd);
}

void SiblingChecksums::noteEnd(const engine::DownloadPtr& download) {
    if (download->status() != engine::DQDownloadStatusDone || download->URL().isEmpty())
        return;
    if (isChecksumListName(download->name()))
        readList(download);
    else
        applyTo(download);
}

void SiblingChecksums::readList(const engine::DownloadPtr& list) {
    const QString path = list->path();
    const auto content = std::make_shared<QByteArray>();
    controller_.surroundings().disks.holding(path).run(
        [path, content] { *content = platform::readFile(path, largestChecksumList).data; },
        [guard = QPointer<SiblingChecksums>(this), list, content] {
            if (guard && !content->isEmpty())
                guard->apply(*list, *content);
        });
}

void SiblingChecksums::apply(const engine::DQDownload& list, const QByteArray& content) {
    constexpr std::size_t mostLists = 50;
    const List known{folderOf(list), list.name(), content};
    if (lists_.size() >= mostLists)
        lists_.erase(lists_.begin());
    lists_.push_back(known);
    const Downloads present = controller_.downloads();
    for (const engine::DownloadPtr& file : present) {
        if (file.get() != &list && folderOf(*file) == known.folder) {
            if (const auto checksum = checksumInList(content, known.name, file->name()))
                expect(file, *checksum);
        }
    }
}

void SiblingChecksums::applyTo(const engine::DownloadPtr& file) {
    if (lists_.empty())
        return;
    const QString folder = folderOf(*file);
    for (const List& list : lists_) {
        if (list.folder != folder)
            continue;
        if (const auto checksum = checksumInList(list.content, list.name, file->name()))
            return expect(file, *checksum);
    }
}

void SiblingChecksums::expect(const engine::DownloadPtr& file, const engine::Checksum& checksum) {
    if (!file->userSettings().contains(engine::keys::checksum) && canExpectChecksum(*file))
        expectChecksum(controller_, file, checksum);
}

}  // namespace app
