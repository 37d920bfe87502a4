#pragma once

#include <cstddef>
#include <iterator>
#include <optional>

namespace links {

/// Whether two arrays of pointers hold the same objects in the same order.
template <typename Array>
[[nodiscard]] bool isIdenticalToArray(const Array& a, const Array& b) {
    return a == b;
}

/// The objects at the indexes, which ascend, without those beyond the end. Nothing: none is left.
template <typename Array, typename Indexes>
[[nodiscard]] std::optional<Array> objectsForIndexSet(const Array& array, const Indexes& indexes) {
    Array chosen;
    for (const auto index : indexes) {
        if (static_cast<std::size_t>(index) < static_cast<std::size_t>(array.size()))
            chosen.push_back(array[index]);
    }
    return chosen.empty() ? std::nullopt : std::optional(std::move(chosen));
}

/// What a comparison of two neighbours said.
struct NeighbourOrder {
    int order = 0;  ///< -1, 0 or 1 (out of order).
    /// The criterion said nothing and the name broke the tie.
    bool isTieBreak = false;
};

/// Whether sorting would change nothing. With `mustUseCriterionSpecificSorting` the criterion
/// itself, not only the tie-break, must have put some pair in order. Fewer than two elements:
/// false.
template <typename Array, typename Compare>
[[nodiscard]] bool isEffectivelySorted(const Array& array, bool mustUseCriterionSpecificSorting,
                                       const Compare& compare) {
    if (array.size() < 2)
        return false;
    bool criterionDecided = false;
    for (auto next = std::next(array.begin()); next != array.end(); ++next) {
        const NeighbourOrder neighbours = compare(*std::prev(next), *next);
        if (neighbours.order > 0)
            return false;
        criterionDecided |= neighbours.order < 0 && !neighbours.isTieBreak;
    }
    return criterionDecided || !mustUseCriterionSpecificSorting;
}

}  // namespace links
