#include "app/history/history_file.h"

#include <QFile>
#include <cerrno>

#include "app/queue/archive_writer.h"
#include "platform/base/log.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Without a limit on their number, a hundred thousand entries take some 60 MB.
constexpr qint64 mostBytesOfHistory = 1 << 30;

}  // namespace

HistoryFile::HistoryFile(QString path, platform::Disks& disks, platform::RunLoop& loop)
    : path_(std::move(path)),
      writer_(std::make_unique<ArchiveWriter>(
          path_, disks, loop, [](const std::optional<platform::Error>& error) {
              if (error) {
                  platform::log(u"cannot write the history: %1"_s.arg(error->text),
                                platform::LogLevel::Error);
              }
          })) {}

HistoryFile::~HistoryFile() = default;

QList<HistoryEntry> HistoryFile::read() {
    const platform::FileContents contents = platform::readFile(path_, mostBytesOfHistory);
    if (contents.error && contents.error->is(platform::posixErrorDomain, ENOENT)) {
        return {};
    }
    if (contents.error) {
        platform::logUnreadableFile(path_, *contents.error);
        mayWrite_ = false;
        return {};
    }
    const platform::PropertyListResult list =
        platform::readPropertyList(contents.data, mostBytesOfHistory);
    if (list.value.userType() != QMetaType::QVariantList) {
        mayWrite_ = !platform::keepDamagedFileAside(path_).isEmpty();
        return {};
    }
    QList<HistoryEntry> entries;
    for (const QVariant& element : list.value.toList()) {
        entries.append(historyEntryFromDictionary(element.toMap()));
    }
    return entries;
}

void HistoryFile::write(const QList<HistoryEntry>& entries) {
    if (!mayWrite_) {
        return;
    }
    if (entries.isEmpty()) {
        writer_->finish();
        QFile::remove(path_);
        return;
    }
    writer_->write([entries] {
        ArchiveWriter::Elements elements;
        elements.reserve(static_cast<std::size_t>(entries.size()));
        for (const HistoryEntry& entry : entries) {
            elements.push_back(platform::propertyListElement(historyDictionary(entry)));
        }
        return elements;
    });
}

void HistoryFile::finish() {
    writer_->finish();
}

}  // namespace app
