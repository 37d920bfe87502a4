#pragma once

#include <QByteArray>
#include <QString>
#include <algorithm>
#include <vector>

#include "engine/queue/download_queue.h"
#include "links/arrays.h"

namespace app {

using engine::Downloads;

/// By what downloads are compared. Any other number compares names.
namespace criterion {
inline constexpr qint64 dateAdded = 0;
inline constexpr qint64 name = 1;
inline constexpr qint64 progress = 2;
inline constexpr qint64 host = 3;
inline constexpr qint64 address = 4;
}  // namespace criterion

/// What one download is compared by, ready for many comparisons.
class SortKey {
public:
    /// Brings the key up to date; what has not changed is not computed again.
    void update(const engine::DQDownload& download, qint64 criterion);

    /// Both keys are for `criterion`. Names and then addresses break a tie.
    [[nodiscard]] static links::NeighbourOrder compare(const SortKey& a, const SortKey& b,
                                                       qint64 criterion);

private:
    /// A text and the key that orders it naturally.
    struct Text {
        QString text;
        QByteArray key;
        void update(const QString& newText);
    };

    [[nodiscard]] static int compareByCriterion(const SortKey& a, const SortKey& b,
                                                qint64 criterion);

    double number_ = 0;  ///< Seconds since 1970, or completion fraction.
    bool isPaused_ = false;
    Text text_;  ///< Host or address.
    Text name_;
    QString address_;
};

/// Two downloads by a criterion. Dates within 0.1 seconds and fractions within 0.00001
/// count as equal, so that the order is not transitive; `sortDownloads` bears that.
[[nodiscard]] links::NeighbourOrder compareDownloadsWithCriterion(const engine::DQDownload& a,
                                                                  const engine::DQDownload& b,
                                                                  qint64 criterion);

/// Sorts, leaving equal ones in their order. `less` need not be transitive.
template <typename Element, typename Less>
void mergeSort(std::vector<Element>& elements, const Less& less);

/// By a criterion, equal ones staying in their order.
void sortDownloads(Downloads& downloads, qint64 criterion);

/// Whether sorting by the criterion would change nothing. False for fewer than two elements or a
/// negative criterion. With `mustUseCriterion`, also false if nothing but tie-breaks decided.
[[nodiscard]] bool containsDownloadsEffectivelySortedByCriterion(const Downloads& downloads,
                                                                 qint64 criterion,
                                                                 bool mustUseCriterion);

template <typename Element, typename Less>
void mergeSort(std::vector<Element>& elements, const Less& less) {
    std::vector<Element> merged(elements.size());
    for (std::size_t width = 1; width < elements.size(); width *= 2) {
        for (std::size_t start = 0; start < elements.size(); start += 2 * width) {
            const std::size_t middle = std::min(start + width, elements.size());
            const std::size_t end = std::min(start + 2 * width, elements.size());
            std::size_t left = start, right = middle;
            for (std::size_t to = start; to < end; ++to) {
                const bool takesRight =
                    left == middle || (right < end && less(elements[right], elements[left]));
                merged[to] = std::move(elements[takesRight ? right++ : left++]);
            }
        }
        elements.swap(merged);
    }
}

}  // namespace app
