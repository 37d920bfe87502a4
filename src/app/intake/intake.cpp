#include "app/intake/intake.h"

#include <algorithm>

#include "app/settings.h"
#include "engine/settings.h"
#include "links/text/localization.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Addresses taken in one turn of the main loop: a few milliseconds of work.
constexpr int addressesPerTurn = 500;
/// An intake that has made more downloads than this says how far it is.
constexpr qsizetype longIntake = 10'000;
constexpr auto delayedOpening = "openURLsWithArguments";

std::vector<platform::Url> allOf(AddressSource& addresses) {
    std::vector<platform::Url> urls;
    while (std::optional<platform::Url> url = addresses.next()) {
        urls.push_back(std::move(*url));
    }
    return urls;
}

}  // namespace

struct Intake::Activity {
    IntakeRun run;
    RefusedTexts refused;
    bool wasEmpty = false;
    /// How many downloads the list has been told of.
    qsizetype toldCount = 0;
};

Intake::Intake(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

Intake::~Intake() {
    surroundings_.loop.cancelAll(this);
}

std::vector<platform::Url> Intake::URLsFromCollection(const QStringList& items) const {
    return allOf(
        *addressesInCollection(items, surroundings_.queue.downloads(), surroundings_.defaults));
}

std::vector<platform::Url> Intake::URLsFromString(const QString& text) const {
    return allOf(*addressesInText(text, surroundings_.queue.downloads(), surroundings_.defaults));
}

std::unique_ptr<AddressSource> Intake::addressesInPasteboard(const Pasteboard& pasteboard,
                                                             RefusedTexts refused) const {
    const Downloads& queue = surroundings_.queue.downloads();
    if (pasteboard.urls) {
        return addressesInCollection(*pasteboard.urls, queue, surroundings_.defaults,
                                     std::move(refused));
    }
    return pasteboard.text ? addressesInText(*pasteboard.text, queue, surroundings_.defaults,
                                             std::move(refused))
                           : nullptr;
}

std::optional<std::vector<platform::Url>> Intake::URLsFromPasteboard(
    const Pasteboard& pasteboard) const {
    const std::unique_ptr<AddressSource> addresses = addressesInPasteboard(pasteboard);
    return addresses ? std::optional(allOf(*addresses)) : std::nullopt;
}

void Intake::openURLs(std::vector<platform::Url> urls, const ScriptArguments& arguments) {
    begin(std::make_unique<ListedAddresses>(std::move(urls)), arguments, {});
}

void Intake::openText(const QString& text) {
    beginWithPasteboard({{}, text});
}

void Intake::beginWithPasteboard(const Pasteboard& pasteboard) {
    const auto refused = std::make_shared<QStringList>();
    begin(addressesInPasteboard(pasteboard, refused), {}, refused);
}

void Intake::begin(std::unique_ptr<AddressSource> addresses, const ScriptArguments& arguments,
                   RefusedTexts refused) {
    const IntakeRun::Surroundings surroundings{surroundings_.queue, surroundings_.defaults,
                                               surroundings_.frontEnd};
    const bool wasEmpty = surroundings_.queue.downloads().empty();
    auto unfolded = std::make_unique<UnfoldedFolders>(std::move(addresses), fileCollector());
    const auto activity = std::make_shared<Activity>(Activity{
        IntakeRun(surroundings, std::move(unfolded), arguments), std::move(refused), wasEmpty});
    activities_.push_back(activity);
    proceed(activity);
}

void Intake::proceed(const std::shared_ptr<Activity>& activity) {
    const bool goesOn = activity->run.step(addressesPerTurn);
    report(*activity, goesOn);
    if (goesOn) {
        surroundings_.loop.performAfter(this, "proceed", 0,
                                        [this, activity] { proceed(activity); });
    } else {
        std::erase(activities_, activity);
    }
}

void Intake::report(Activity& activity, bool goesOn) {
    const qsizetype count = activity.run.count();
    // Showing the list costs more the longer it is, so a long intake shows it ever more rarely.
    if (count > activity.toldCount && (!goesOn || count >= 2 * activity.toldCount)) {
        const bool isFirst = std::exchange(activity.toldCount, count) == 0;
        surroundings_.didGrow(activity.wasEmpty && isFirst);
    }
    if (count > longIntake) {
        surroundings_.progressed(goesOn ? std::optional(count) : std::nullopt);
    }
    if (!goesOn && count > 0) {
        surroundings_.didEnd(activity.run.names());
    }
    if (!goesOn && activity.refused && !activity.refused->isEmpty()) {
        surroundings_.notUnderstood(activity.refused->join(u'\n'));
    }
    if (!goesOn && !activity.run.problems().isEmpty()) {
        surroundings_.notOpened(activity.run.problems());
    }
}

bool Intake::isActive() const {
    return !activities_.empty() || surroundings_.loop.isScheduled(this, delayedOpening);
}

void Intake::stop() {
    for (const std::shared_ptr<Activity>& activity : activities_) {
        activity->run.stop();
    }
}

void Intake::openURLsAfterDelay(const std::vector<platform::Url>& urls,
                                const ScriptArguments& arguments, bool giveFeedback) {
    surroundings_.loop.performAfter(this, delayedOpening, 0,
                                    [this, urls, arguments] { openURLs(urls, arguments); });
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
    const std::unique_ptr<AddressSource> addresses = addressesInPasteboard(pasteboard);
    return addresses && addresses->next();
}

bool Intake::dropPasteboard(const Pasteboard& pasteboard) {
    if (!canDropPasteboard(pasteboard)) {
        return false;
    }
    // The drag's source waits for the drop to return.
    surroundings_.loop.performAfter(this, "dropPasteboard", 0,
                                    [this, pasteboard] { beginWithPasteboard(pasteboard); });
    return true;
}

std::optional<QString> Intake::openURLFromPasteboard(const Pasteboard& pasteboard) {
    const std::unique_ptr<AddressSource> addresses = addressesInPasteboard(pasteboard);
    std::vector<platform::Url> urls;
    std::optional<platform::Url> next;
    while (addresses && static_cast<qsizetype>(urls.size()) < longIntake &&
           (next = addresses->next())) {
        urls.push_back(std::move(*next));
    }
    const bool areWhole = std::all_of(
        urls.begin(), urls.end(), [](const platform::Url& url) { return !url.scheme().isEmpty(); });
    if (urls.empty()) {
        return pasteboard.text.value_or(QString());
    }
    if (areWhole) {
        beginWithPasteboard(pasteboard);
        return {};
    }
    QStringList lines;
    std::transform(urls.begin(), urls.end(), std::back_inserter(lines),
                   [](const platform::Url& url) { return url.absoluteString(); });
    return lines.join(u'\n');
}

bool Intake::retry(const Downloads& downloads) {
    bool didReplace = false;
    const engine::DownloadQueue::Batch batch(surroundings_.queue);
    const bool autoStart = surroundings_.defaults.get(settings::autoStart);
    for (const engine::DownloadPtr& download : downloads) {
        didReplace =
            surroundings_.queue.replace(*download, download->URL(), autoStart) || didReplace;
    }
    return didReplace;
}

}  // namespace app
