#include "links/recognition/exploded_urls.h"

#include <limits>

namespace links {
namespace {

/// Braces within braces within braces are no address; past this they are left alone, so that a
/// short text cannot fill the memory.
constexpr qsizetype mostCopiedUnits = 4'000'000;

QString joined(QStringView start, QStringView end) {
    QString text;
    text.reserve(start.size() + end.size());
    return text.append(start).append(end);
}

}  // namespace

ExplodedURLs::ExplodedURLs(const QString& candidate) : candidate_(candidate) {}

std::optional<QString> ExplodedURLs::next() {
    if (candidate_) {
        const QString candidate = *std::exchange(candidate_, std::nullopt);
        if (auto address = descend(candidate, candidate))
            return address;
    }
    while (!levels_.empty()) {
        Level& level = levels_.back();
        prefix_.truncate(level.prefixLength);
        if (level.group.appendNext(prefix_)) {
            level.hasYielded = true;
            if (auto address = descendBehind(level))
                return address;
            continue;
        }
        const bool isUnexpanded = !level.hasYielded;
        const QString address = isUnexpanded ? joined(prefix_, level.groupAndSuffix) : QString();
        levels_.pop_back();
        if (isUnexpanded)
            return address;
    }
    return std::nullopt;
}

/// Goes on to the next group in `rest`, a view of `text` that follows `prefix_`. An address: there
/// is no further group.
std::optional<QString> ExplodedURLs::descend(QString text, QStringView rest) {
    const qsizetype opening = rest.indexOf(u'{');
    const qsizetype closing = opening < 0 ? -1 : rest.indexOf(u'}', opening);
    if (closing < 0)
        return joined(prefix_, rest);
    prefix_.append(rest.first(opening));
    levels_.push_back({.text = std::move(text),
                       .groupAndSuffix = rest.sliced(opening),
                       .suffix = rest.sliced(closing + 1),
                       .group = RangeGroup(rest.sliced(opening + 1, closing - opening - 1)),
                       .prefixLength = prefix_.size()});
    return std::nullopt;
}

/// Goes on behind the alternative that stands at the end of `prefix_`. One that holds a brace of
/// its own is read again together with what follows.
std::optional<QString> ExplodedURLs::descendBehind(const Level& level) {
    const QStringView alternative = QStringView(prefix_).sliced(level.prefixLength);
    if (!alternative.contains(u'{'))
        return descend(level.text, level.suffix);
    const QString text = joined(alternative, level.suffix);
    copiedUnits_ += text.size();
    if (copiedUnits_ > mostCopiedUnits)
        return joined(prefix_, level.suffix);
    prefix_.truncate(level.prefixLength);
    return descend(text, text);
}

quint64 numberOfExplodedURLs(const QString& candidate) {
    constexpr quint64 largest = std::numeric_limits<quint64>::max();
    quint64 number = 1;
    for (qsizetype opening = candidate.indexOf(u'{'); opening >= 0;) {
        const qsizetype closing = candidate.indexOf(u'}', opening);
        if (closing < 0)
            break;
        const auto inside = QStringView(candidate).sliced(opening + 1, closing - opening - 1);
        const quint64 count = RangeGroup(inside).countRest();
        if (count == 0)
            break;
        number = number > largest / count ? largest : number * count;
        opening = candidate.indexOf(u'{', closing);
    }
    return number;
}

QStringList explodedURLStrings(const QString& candidate) {
    QStringList addresses;
    ExplodedURLs exploded(candidate);
    while (auto address = exploded.next())
        addresses.append(std::move(*address));
    return addresses;
}

QStringList explodedURLStrings(const QStringList& candidates) {
    QStringList addresses;
    for (const QString& candidate : candidates)
        addresses.append(explodedURLStrings(candidate));
    return addresses;
}

}  // namespace links
