#include "scripting/hand_overs/hand_over_ids.h"

#include <QVariantMap>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/base/log.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "scripting/requests.h"

namespace scripting {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 secondsOfMemory = 24LL * 60 * 60;
constexpr qsizetype mostIds = 50'000;
constexpr qint64 maximumFileSize = 32 << 20;
const QString idKey = u"Id"_s, timeKey = u"Time"_s, withdrawnKey = u"Withdrawn"_s;

}  // namespace

HandOverIds::HandOverIds(const QString& path, platform::Disks& disks, platform::RunLoop& loop)
    : loop_(loop), writer_(path, disks, loop, [this](const auto& error) { didWrite(!error); }) {
    read(path);
}

HandOverIds::~HandOverIds() = default;

void HandOverIds::read(const QString& path) {
    const platform::FileContents contents = platform::readFile(path, maximumFileSize);
    if (contents.error && contents.error->is(platform::posixErrorDomain, ENOENT)) {
        return;
    }
    if (contents.error) {
        platform::logUnreadableFile(path, *contents.error);
        mayWrite_ = false;
        return;
    }
    const QVariant list = platform::readPropertyList(contents.data, maximumFileSize).value;
    if (list.userType() != QMetaType::QVariantList) {
        mayWrite_ = !platform::keepDamagedFileAside(path).isEmpty();
        return;
    }
    for (const QVariant& element : list.toList()) {
        const QVariantMap entry = element.toMap();
        const QString id = entry.value(idKey).toString();
        if (isHandOverId(id)) {
            entries_[id] = {entry.value(withdrawnKey).toBool() ? State::Withdrawn : State::Taken,
                            entry.value(timeKey).toLongLong()};
        }
    }
    forgetOld();
}

qint64 HandOverIds::now() const {
    return static_cast<qint64>(loop_.clock().wall());
}

HandOverIds::State HandOverIds::state(const QString& id) const {
    const auto found = entries_.constFind(id);
    return found == entries_.cend() || now() - found->time > secondsOfMemory ? State::Unknown
                                                                             : found->state;
}

void HandOverIds::set(const QString& id, State state) {
    entries_[id] = {state, now()};
    forgetOld();
}

void HandOverIds::forgetOld() {
    const qint64 oldest = now() - secondsOfMemory;
    if (entries_.size() <= mostIds) {
        return;
    }
    entries_.removeIf([oldest](const auto& entry) { return entry->time < oldest; });
    while (entries_.size() > mostIds) {
        entries_.erase(std::min_element(
            entries_.begin(), entries_.end(),
            [](const Entry& one, const Entry& other) { return one.time < other.time; }));
    }
}

void HandOverIds::whenWritten(Written written) {
    if (!mayWrite_) {
        written(false);
        return;
    }
    waiting_.push_back(std::move(written));
    if (!writer_.isBusy()) {
        write();
    }
}

void HandOverIds::write() {
    beingWritten_.insert(beingWritten_.end(), std::make_move_iterator(waiting_.begin()),
                         std::make_move_iterator(waiting_.end()));
    waiting_.clear();
    const qint64 oldest = now() - secondsOfMemory;
    writer_.write([entries = entries_, oldest] {
        app::ArchiveWriter::Elements list;
        for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
            if (entry->time < oldest) {
                continue;
            }
            QVariantMap map{{idKey, entry.key()}, {timeKey, entry->time}};
            if (entry->state == State::Withdrawn) {
                map[withdrawnKey] = true;
            }
            list.push_back(platform::propertyListElement(map));
        }
        return list;
    });
}

void HandOverIds::didWrite(bool isOnDisk) {
    if (writer_.isBusy()) {
        return;
    }
    const std::vector<Written> heard = std::exchange(beingWritten_, {});
    if (!waiting_.empty()) {
        write();
    }
    for (const Written& written : heard) {
        written(isOnDisk);
    }
}

}  // namespace scripting
