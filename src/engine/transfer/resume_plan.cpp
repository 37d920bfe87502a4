#include "engine/transfer/resume_plan.h"

#include <QFile>
#include <algorithm>

#include "engine/paths/part_journal.h"
#include "engine/record/user_settings.h"
#include "links/paths/path_components.h"

namespace engine {
namespace {

bool isGapless(const std::vector<StoredFraction>& fractions) {
    qint64 next = 0;
    for (const StoredFraction& fraction : fractions) {
        const bool follows = next == 0 ? fraction.start > 0 : fraction.start == next;
        if (!follows || fraction.end < fraction.start)
            return false;
        next = fraction.end + 1;
    }
    return true;
}

bool areAllComplete(const ResumePlan& plan) {
    for (std::size_t index = 0; index < plan.fractions.size(); ++index) {
        if (plan.fractionSizes[index] < plan.fractions[index].length())
            return false;
    }
    return plan.primarySize >= plan.fractions.front().start;
}

ResumePlan::Kind kindOfSingle(qint64 size, qint64 length, bool isFinishing) {
    if (length == 0)
        return isFinishing ? ResumePlan::Kind::Complete : ResumePlan::Kind::Single;
    if (size < length)
        return ResumePlan::Kind::Single;
    return size == length ? ResumePlan::Kind::Complete : ResumePlan::Kind::Damaged;
}

}  // namespace

std::vector<StoredFraction> splitIntoFractions(qint64 length, qint64 minimumSize, qint64 channels,
                                               const QString& primaryPath) {
    std::vector<StoredFraction> fractions;
    const qint64 count = std::min(length / minimumSize, channels);
    if (count < 2)
        return fractions;
    const qint64 size = length / count;
    qint64 offset = length - (count - 1) * size;
    for (qint64 index = 1; index < count; ++index, offset += size)
        fractions.push_back(
            {accelerationFragmentPath(primaryPath, index), offset, offset + size - 1});
    return fractions;
}

std::vector<StoredFraction> fractionsFromArchive(const QVariant& recorded,
                                                 const QString& primaryPath) {
    std::vector<StoredFraction> fractions;
    const QVariantList entries = recorded.toList();
    if (entries.size() > qsizetype{mostFractions})
        return fractions;
    const QString folder = links::stringByDeletingLastPathComponent(primaryPath);
    for (const QVariant& element : entries) {
        const QVariantMap entry = element.toMap();
        const QString name = links::lastPathComponent(entry.value(keys::workerTarget).toString());
        fractions.push_back({links::stringByAppendingPathComponent(folder, name),
                             entry.value(keys::workerStart).toLongLong(),
                             entry.value(keys::workerEnd).toLongLong()});
    }
    return isGapless(fractions) ? fractions : std::vector<StoredFraction>();
}

std::vector<StoredFraction> withFractionsSplitSince(std::vector<StoredFraction> recorded,
                                                    const QString& primaryPath) {
    const auto isRecorded = [&](const QString& path) {
        return path == accelerationFragmentPath(primaryPath, 0) ||
               std::any_of(recorded.begin(), recorded.end(),
                           [&](const StoredFraction& part) { return part.target == path; });
    };
    for (const QString& path : fragmentPathsForIntermediateDownloadTargetPath(primaryPath)) {
        if (isRecorded(path))
            continue;
        const auto entry = PartJournal::read(path);
        if (!entry) {
            QFile::remove(path);
            continue;
        }
        if (recorded.empty())
            continue;
        const auto next = std::upper_bound(
            recorded.begin(), recorded.end(), entry->start,
            [](qint64 start, const StoredFraction& part) { return start < part.start; });
        const qint64 end = next == recorded.end() ? recorded.back().end : next->start - 1;
        const qint64 before = next == recorded.begin() ? 0 : (next - 1)->start;
        // Else it belongs to nothing here, and the count will say so.
        if (entry->start <= before || entry->start > end || recorded.size() >= mostFractions)
            continue;
        const auto added = recorded.insert(next, {path, entry->start, end});
        if (added != recorded.begin())
            (added - 1)->end = entry->start - 1;
    }
    return recorded;
}

QVariantList archiveOfFractions(const std::vector<StoredFraction>& fractions) {
    QVariantList entries;
    for (const StoredFraction& fraction : fractions)
        entries.append(QVariantMap{{keys::workerTarget, fraction.target},
                                   {keys::workerStart, fraction.start},
                                   {keys::workerEnd, fraction.end}});
    return entries;
}

ResumePlan planResume(const QString& primaryPath, const PartialFileSizes& sizes,
                      std::vector<StoredFraction> recorded, qint64 length, bool isFinishing) {
    ResumePlan plan;
    plan.size = sizes.total;
    if (plan.size == 0)
        return plan;
    const qsizetype recordedCount = static_cast<qsizetype>(recorded.size());
    const qsizetype fragmentCount = std::max<qsizetype>(sizes.byPath.size() - 1, 0);
    plan.primarySize = fragmentCount > 0 ? sizes.byPath.value(primaryPath) : sizes.total;

    // Joining appends the fragments to the primary file, so that what the primary file covers is
    // there whether its fragment still is or not.
    std::erase_if(recorded,
                  [&](const StoredFraction& fraction) { return fraction.end < plan.primarySize; });
    const bool coversSome = static_cast<qsizetype>(recorded.size()) < recordedCount;
    if (recorded.empty() && (coversSome || fragmentCount == 0)) {
        plan.kind = kindOfSingle(plan.primarySize, length, isFinishing);
        return plan;
    }
    if (fragmentCount == 0) {
        plan.kind = coversSome ? ResumePlan::Kind::Damaged
                               : kindOfSingle(plan.primarySize, length, isFinishing);
        return plan;
    }
    const bool haveAllFiles = std::all_of(
        recorded.begin(), recorded.end(),
        [&](const StoredFraction& fraction) { return sizes.byPath.contains(fraction.target); });
    const bool countsAgree =
        coversSome ? fragmentCount <= recordedCount : fragmentCount == recordedCount;
    const bool endsRight = recorded.empty() || length == 0 || recorded.back().end + 1 == length;
    if (!haveAllFiles || !countsAgree || !endsRight) {
        plan.kind = ResumePlan::Kind::Damaged;
        return plan;
    }
    for (const StoredFraction& fraction : recorded)
        plan.fractionSizes.push_back(sizes.byPath.value(fraction.target));
    plan.fractions = std::move(recorded);
    plan.kind = areAllComplete(plan) ? ResumePlan::Kind::Complete : ResumePlan::Kind::Accelerated;
    return plan;
}

}  // namespace engine
