#include "app/intake/intake.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/settings.h"
#include "engine/settings.h"
#include "links/recognition/text_addresses.h"
#include "links/settings.h"
#include "links/text/localization.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Addresses taken in one turn of the main loop: a few milliseconds of work.
constexpr int addressesPerTurn = 500;
/// An intake that has made more downloads than this says how far it is.
constexpr qsizetype longIntake = 10'000;
/// A large series waits while so many downloads are not done.
constexpr qsizetype mostUnfinished = 50'000;
constexpr platform::Seconds waitForRoom = 1;

}  // namespace

struct Intake::Activity {
    IntakeRun run;
    SharedIntakeNotes notes;
    bool wasEmpty = false;
    /// How many downloads the list has been told of.
    qsizetype toldCount = 0;
};

Intake::Intake(Surroundings surroundings)
    : surroundings_(std::move(surroundings)),
      steps_(surroundings_.loop),
      openings_(surroundings_.loop) {}

/// Here a text that holds no whole address counts by what the parser makes of it, if only a name of
/// a host; whoever opens it finds out that it cannot be downloaded.
std::vector<platform::Url> Intake::candidatesIn(const QStringList& texts) const {
    const bool skips = surroundings_.defaults.get(links::settings::skipRedirectingServices);
    KnownAddresses known;
    if (surroundings_.defaults.get(settings::instantDuplicateCheck)) {
        known = KnownAddresses(surroundings_.queue.downloads());
    }
    std::vector<platform::Url> urls;
    const auto add = [&](const std::optional<platform::Url>& url) {
        if (url && !known.find(links::comparisonURLString(url->absoluteString()))) {
            urls.push_back(*url);
        }
    };
    links::TextAddresses addresses(texts, skips);
    while (const auto finding = addresses.next()) {
        if (finding->address) {
            add(finding->address);
            continue;
        }
        auto candidates = links::URLCandidates::fromCollection({finding->refused}, skips);
        while (const auto candidate = candidates.next()) {
            add(platform::Url::parseLenient(*candidate));
        }
    }
    return urls;
}

std::vector<platform::Url> Intake::URLsFromCollection(const QStringList& items) const {
    return candidatesIn(items);
}

std::vector<platform::Url> Intake::URLsFromString(const QString& text) const {
    return candidatesIn({text});
}

std::optional<std::vector<platform::Url>> Intake::URLsFromPasteboard(
    const Pasteboard& pasteboard) const {
    return pasteboard.urls || pasteboard.text ? std::optional(candidatesIn(pasteboard.texts()))
                                              : std::nullopt;
}

void Intake::openURLs(std::vector<platform::Url> urls, const ScriptArguments& arguments) {
    begin(std::make_unique<ListedAddresses>(std::move(urls)), arguments,
          std::make_shared<IntakeNotes>());
}

void Intake::openNewURLs(std::vector<platform::Url> urls) {
    const auto notes = std::make_shared<IntakeNotes>();
    begin(newAddresses(std::make_unique<ListedAddresses>(std::move(urls)),
                       surroundings_.queue.downloads(), surroundings_.defaults, notes),
          {}, notes);
}

void Intake::openText(const QString& text, const ScriptArguments& arguments) {
    beginWithPasteboard({{}, text}, arguments);
}

void Intake::beginWithPasteboard(const Pasteboard& pasteboard, const ScriptArguments& arguments) {
    const auto notes = std::make_shared<IntakeNotes>();
    begin(newAddressesInTexts(pasteboard.texts(), surroundings_.queue.downloads(),
                              surroundings_.defaults, surroundings_.frontEnd.questions, notes),
          arguments, notes);
}

void Intake::begin(std::unique_ptr<AddressSource> addresses, const ScriptArguments& arguments,
                   const SharedIntakeNotes& notes) {
    const IntakeRun::Surroundings surroundings{surroundings_.queue, surroundings_.defaults,
                                               surroundings_.frontEnd};
    const bool wasEmpty = surroundings_.queue.downloads().empty();
    auto unfolded = std::make_unique<UnfoldedFolders>(std::move(addresses), fileCollector(), notes);
    const auto activity = std::make_shared<Activity>(
        Activity{IntakeRun(surroundings, std::move(unfolded), arguments, notes), notes, wasEmpty});
    activities_.push_back(activity);
    proceed(activity);
}

/// A series may be longer than any memory: what comes of it is fetched before more is taken in.
bool Intake::mustWait(const Activity& activity) const {
    return activity.notes->holdsLargeSeries() &&
           surroundings_.queue.tally().count(engine::unfinishedStatuses) >= mostUnfinished;
}

void Intake::proceed(const std::shared_ptr<Activity>& activity) {
    if (mustWait(*activity)) {
        if (surroundings_.queue.tally().count(engine::activeStatuses) > 0) {
            steps_.start(waitForRoom, [this, activity] { proceed(activity); });
            return;
        }
        activity->notes->noteProblem(
            links::localized("The rest of the series was left out: too many downloads wait."));
        activity->run.stop();
    }
    const bool goesOn = activity->run.step(addressesPerTurn);
    report(*activity, goesOn);
    if (goesOn) {
        steps_.start(0, [this, activity] { proceed(activity); });
    } else {
        std::erase(activities_, activity);
        steps_.start(0, [this] { callWaiting(); });
    }
}

void Intake::whenTakenIn(std::function<void()> done) {
    // Those that go on already are none of what was handed over last.
    std::vector<std::weak_ptr<Activity>> earlier(activities_.begin(), activities_.end());
    // Behind the openings that are to come.
    openings_.start(0, [this, earlier = std::move(earlier), done = std::move(done)] {
        Waiting waiting{{}, done};
        for (const std::shared_ptr<Activity>& activity : activities_) {
            const auto isIt = [&](const auto& other) { return other.lock() == activity; };
            if (std::none_of(earlier.begin(), earlier.end(), isIt)) {
                waiting.activities.push_back(activity);
            }
        }
        waiting_.push_back(std::move(waiting));
        callWaiting();
    });
}

void Intake::callWaiting() {
    const auto goesOn = [&](const Waiting& waiting) {
        return std::any_of(waiting.activities.begin(), waiting.activities.end(),
                           [](const auto& activity) { return !activity.expired(); });
    };
    std::vector<Waiting> over;
    const auto firstOver = std::stable_partition(waiting_.begin(), waiting_.end(), goesOn);
    std::move(firstOver, waiting_.end(), std::back_inserter(over));
    waiting_.erase(firstOver, waiting_.end());
    for (const Waiting& waiting : over) {
        waiting.done();
    }
}

void Intake::report(Activity& activity, bool goesOn) {
    const qsizetype count = activity.run.count();
    // Showing the list costs more the longer it is, so a long intake shows it ever more rarely.
    if (count > activity.toldCount && (!goesOn || count >= 2 * activity.toldCount)) {
        const bool isFirst = std::exchange(activity.toldCount, count) == 0;
        surroundings_.didGrow(activity.wasEmpty && isFirst);
    } else if (!goesOn && activity.run.hasReplaced()) {
        surroundings_.didGrow(false);
    }
    if (count > longIntake) {
        surroundings_.progressed(goesOn ? std::optional(count) : std::nullopt);
    }
    if (!goesOn && count > 0) {
        surroundings_.didEnd(activity.run.made());
    }
    if (!goesOn) {
        tellNotes(activity);
    }
}

void Intake::tellNotes(const Activity& activity) {
    if (!activity.notes->known().empty()) {
        surroundings_.alreadyInList(activity.notes->known());
    }
    if (!activity.notes->refused().empty()) {
        surroundings_.notUnderstood(activity.notes->refused());
    }
    if (!activity.notes->problems().isEmpty()) {
        surroundings_.notOpened(activity.notes->problems());
    }
}

bool Intake::isActive() const {
    return !activities_.empty() || openings_.isActive();
}

void Intake::stop() {
    for (const std::shared_ptr<Activity>& activity : activities_) {
        activity->run.stop();
    }
}

void Intake::openURLsAfterDelay(const std::vector<platform::Url>& urls,
                                const ScriptArguments& arguments, bool giveFeedback) {
    openings_.start(0, [this, urls, arguments] { openURLs(urls, arguments); });
    if (giveFeedback) {
        surroundings_.giveFeedback();
    }
}

FileCollector Intake::fileCollector() const {
    return {surroundings_.frontEnd.questions,
            surroundings_.defaults.get(engine::settings::storeMetadataLocally)};
}

bool Intake::openFiles(const QStringList& paths, bool afterDelay, bool giveFeedback) {
    const std::size_t numberOfDownloads = surroundings_.queue.downloads().size();
    FileCollector files = fileCollector();
    files.getFileURLs(paths);
    reportFruitlessPaths(files.fruitlessPaths());
    if (files.hasTooMany()) {
        surroundings_.notOpened({tooManyFilesText()});
    }
    if (afterDelay) {
        openURLsAfterDelay(files.urls(), {}, giveFeedback);
        return !files.urls().empty();
    }
    openURLs(files.urls());
    if (giveFeedback) {
        surroundings_.giveFeedback();
    }
    return surroundings_.queue.downloads().size() > numberOfDownloads;
}

void Intake::reportFruitlessPaths(const QStringList& paths) {
    QStringList problems;
    for (const QString& path : paths) {
        problems.append(
            links::filledFormat(links::localized("There is nothing to download in %@."), {path}));
    }
    if (!problems.isEmpty()) {
        surroundings_.notOpened(problems);
    }
}

bool Intake::canDropPasteboard(const Pasteboard& pasteboard) const {
    return links::TextAddresses::holdsAddress(
        pasteboard.texts(), surroundings_.defaults.get(links::settings::skipRedirectingServices));
}

bool Intake::dropPasteboard(const Pasteboard& pasteboard) {
    if (pasteboard.isBlank()) {
        return false;
    }
    // The drag's source waits for the drop to return.
    openings_.start(0, [this, pasteboard] { beginWithPasteboard(pasteboard); });
    return true;
}

std::optional<QString> Intake::openURLFromPasteboard(const Pasteboard& pasteboard) {
    if (pasteboard.isBlank()) {
        return pasteboard.text.value_or(QString());
    }
    beginWithPasteboard(pasteboard);
    return {};
}

bool Intake::retry(const Downloads& downloads) {
    bool didReplace = false;
    const engine::DownloadQueue::Batch batch(surroundings_.queue);
    const bool autoStart = surroundings_.defaults.get(settings::autoStart);
    for (const engine::DownloadPtr& download : downloads) {
        didReplace = surroundings_.queue.retry(*download, autoStart) || didReplace;
    }
    return didReplace;
}

}  // namespace app
