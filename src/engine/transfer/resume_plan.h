#pragma once

#include <QString>
#include <QVariant>
#include <vector>

#include "engine/paths/intermediate_files.h"

namespace engine {

/// The part of a worker other than the first, in offsets of the whole file; `end` is its last byte.
struct StoredFraction {
    QString target;
    qint64 start = 0;
    qint64 end = 0;

    [[nodiscard]] qint64 length() const { return end - start + 1; }
};

/// How a file is split over several workers: the parts of all but the first, which takes what
/// stands before them. None: the file is too small for two parts of the minimum size.
[[nodiscard]] std::vector<StoredFraction> splitIntoFractions(qint64 length, qint64 minimumSize,
                                                             qint64 channels,
                                                             const QString& primaryPath);

/// As many parts as a file may come to have, and as a record may name.
inline constexpr std::size_t mostFractions = 128;

/// The parts as they were recorded ("Acceleration Workers"). Targets are looked for beside the
/// primary file, whose folder may have been moved since. None: nothing was recorded, or what was
/// recorded is not a gapless row of parts.
[[nodiscard]] std::vector<StoredFraction> fractionsFromArchive(const QVariant& recorded,
                                                               const QString& primaryPath);
/// With those that were split off after that was written, which their journals tell, for parts that
/// lie in place. What a kill has left half made is deleted.
[[nodiscard]] std::vector<StoredFraction> withFractionsSplitSince(
    std::vector<StoredFraction> recorded, const QString& primaryPath);
[[nodiscard]] QVariantList archiveOfFractions(const std::vector<StoredFraction>& fractions);

/// What can be done with the partial data of a download.
struct ResumePlan {
    enum class Kind {
        Nothing,      ///< There is none.
        Single,       ///< The first worker goes on from `size`.
        Accelerated,  ///< Each worker goes on from where it stood.
        Complete,     ///< All of it is there; it has only to be put together.
        Damaged       ///< It does not fit together.
    };

    Kind kind = Kind::Nothing;
    qint64 size = 0;  ///< Of all that is there.
    qint64 primarySize = 0;
    /// With Accelerated and Complete, the parts behind the primary file.
    std::vector<StoredFraction> fractions;
    /// Bytes in the file of each of them.
    std::vector<qint64> fractionSizes;
};

/// `length` of the whole file, 0 if not known. `isFinishing`: one of unknown length has come whole.
/// All else shows by the lengths of what lies there.
[[nodiscard]] ResumePlan planResume(const QString& primaryPath, const PartialFileSizes& sizes,
                                    std::vector<StoredFraction> recorded, qint64 length,
                                    bool isFinishing);

}  // namespace engine
