#include "app/intake/series_gate.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "app/settings.h"
#include "links/format/numbers.h"
#include "links/text/localization.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using links::filledFormat;
using links::localized;

namespace {

constexpr quint64 usualLength = 10'000;

/// So that the question fits on a screen.
QString shortened(const QString& series) {
    constexpr qsizetype mostShown = 120;
    return series.size() <= mostShown ? series : series.first(mostShown) + u'…';
}

QString numberText(quint64 number) {
    constexpr quint64 largest = std::numeric_limits<qint64>::max();
    return links::stringWithInteger(static_cast<qint64>(std::min(number, largest)));
}

Alert question(const QString& series, const QString& length) {
    return {Alert::Kind::LargeSeries,
            filledFormat(localized("This series stands for %@ addresses."), {length}),
            filledFormat(localized("Do you really want to download all of “%@”?"), {series}),
            u"Download All"_s, u"Cancel"_s};
}

}  // namespace

links::SeriesGate seriesGate(Questions& questions, const platform::UserDefaults& defaults,
                             SharedIntakeNotes notes) {
    return [&questions, &defaults, notes = std::move(notes), decided = std::optional<QString>(),
            isWanted = false](const QString& series, quint64 length) mutable {
        const auto largest = static_cast<quint64>(defaults.get(settings::largestSeries));
        // One text may be looked at in more than one way.
        if (length > largest && std::exchange(decided, series) != series) {
            isWanted = questions.confirm(question(shortened(series), numberText(length)));
            if (!isWanted && !questions.asksAboutSeries())
                notes->noteProblem(filledFormat(
                    localized("“%@” stands for %@ addresses and was not taken: the setting "
                              "“Largest Series” allows %@."),
                    {shortened(series), numberText(length), numberText(largest)}));
        }
        const bool isIn = length <= largest || isWanted;
        if (isIn && length > usualLength)
            notes->noteLargeSeries();
        return isIn;
    };
}

}  // namespace app
