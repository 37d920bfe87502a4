#include "app/intake/intake_run.h"

#include <QFile>
#include <QFileInfo>

#include "app/failures/file_problem.h"
#include "app/intake/address_list.h"
#include "app/intake/request_file.h"
#include "app/intake/target_place.h"
#include "app/queue/restored_download.h"
#include "app/settings.h"
#include "engine/environment.h"
#include "engine/lifecycle/download.h"
#include "engine/record/user_settings.h"
#include "links/paths/folders.h"
#include "links/paths/path_components.h"
#include "links/paths/path_rules.h"
#include "links/recognition/text_addresses.h"
#include "links/settings.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

namespace app {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;
using links::stringByDeletingLastPathComponent;

namespace {

constexpr qint64 mostBytesOfFile = 64 << 20;

/// Without links, and the same for every way of writing it. A path that does not exist stays.
QString canonicalPath(const QString& path) {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical;
}

void logRefusal(const platform::Url& url) {
    platform::log(links::filledFormat(u"cannot download <%@>"_s, {url.absoluteString()}));
}

}  // namespace

IntakeRun::IntakeRun(Surroundings surroundings, std::unique_ptr<AddressSource> addresses,
                     const ScriptArguments& arguments, SharedIntakeNotes notes)
    : surroundings_(surroundings),
      given_(std::move(addresses)),
      notes_(std::move(notes)),
      request_(arguments.request()),
      downloadPageChain_(arguments.downloadPageChain),
      target_(platform::abbreviateWithTilde(arguments.toPosixPath)),
      targetIsFolder_(!target_.isEmpty() && links::isFolderPath(platform::expandTilde(target_))),
      asksForFolder_(!arguments.isFromProgram &&
                     surroundings.frontEnd.presence.areAlternateFunctionalityModifiersHeld()),
      autoStart_(arguments.startsAtOnce.value_or(surroundings.defaults.get(settings::autoStart))) {}

bool IntakeRun::step(int maximum) {
    for (int taken = 0; taken < maximum && !isOver_; ++taken) {
        AddressSource& source = lists_.empty() ? given_ : *lists_.back();
        // A question lets the main loop go on, and with it `stop`.
        const std::optional<platform::Url> url = source.next();
        if (url && open(*url) == Progress::GoesOn) {
            continue;
        }
        if (!lists_.empty()) {
            lists_.pop_back();
        } else if (url || !takeOffered()) {
            isOver_ = true;
        }
    }
    return !isOver_;
}

IntakeRun::Progress IntakeRun::open(const platform::Url& url) {
    if (!url.isFile()) {
        if (!url.absoluteString().endsWith(u"://orlop"_s)) {
            return addDownload(url);
        }
        // How a browser merely brings the program forward.
        surroundings_.frontEnd.presence.showDownloadWindow(true);
        return Progress::GoesOn;
    }
    const QString extension = links::pathExtension(url.filePath()).toLower();
    if (extension == u"orlop"_s) {
        openBundle(url);
        return Progress::GoesOn;
    }
    if (extension == u"txt"_s) {
        openList(url.filePath());
        return Progress::GoesOn;
    }
    return extension == u"obp"_s ? openRequestFile(url) : addDownload(url);
}

void IntakeRun::openBundle(const platform::Url& url) {
    const QString container = canonicalPath(url.filePath());
    if (const engine::DownloadPtr known = downloadOfBundle(container)) {
        goOnWith(*known);
        return;
    }
    const platform::FileContents contents = platform::readFile(
        links::stringByAppendingPathComponent(container, u"Archive.orlopinfo"_s), mostBytesOfFile);
    const QVariant archive = platform::readPropertyList(contents.data).value;
    if (archive.userType() != QMetaType::QVariantMap) {
        platform::log(
            links::filledFormat(u"cannot find locally stored metadata: %@"_s, {container}));
        surroundings_.frontEnd.feedback.beep();
        notes_->noteProblem(links::filledFormat(
            links::localized("There is no begun download in %@."), {container}));
        return;
    }
    if (openMovedBundle(archive.toMap(), container)) {
        return;
    }
    QVariantMap migrated = migratedArchive(archive.toMap(), container);
    if (targetConsent().forArchive(migrated, container) == TargetConsent::Answer::Refused) {
        return;
    }
    if (const engine::DownloadPtr download = addDownloadFromArchive(
            surroundings_.queue, surroundings_.defaults, migrated, container)) {
        didAdd(download);
    } else {
        logRefusal(url);
        notes_->noteProblem(links::filledFormat(
            links::localized("The download begun in %@ has no address to go on from."),
            {container}));
    }
}

/// Null: the bundle is no download's of the queue.
engine::DownloadPtr IntakeRun::downloadOfBundle(const QString& container) const {
    const QString name = links::lastPathComponent(container);
    for (const engine::DownloadPtr& download : surroundings_.queue.downloads()) {
        const QString partialFile = download->intermediateDownloadTargetPath();
        if (partialFile.isEmpty()) {
            continue;
        }
        // Two downloads on one partial file would ruin it, by whatever path they come to it.
        const QString other = stringByDeletingLastPathComponent(partialFile);
        if (links::isEqualToPath(name, links::lastPathComponent(other)) &&
            links::isEqualToPath(container, canonicalPath(other))) {
            return download;
        }
    }
    return nullptr;
}

/// Null: what the archive is of did not move away from a download of the queue.
engine::DownloadPtr IntakeRun::downloadOfMovedData(const QVariantMap& archive) const {
    for (const engine::DownloadPtr& download : surroundings_.queue.downloads()) {
        if (isMovedDataOf(*download, archive)) {
            return download;
        }
    }
    return nullptr;
}

bool IntakeRun::openMovedBundle(const QVariantMap& archive, const QString& container) {
    const engine::DownloadPtr download = downloadOfMovedData(archive);
    if (!download) {
        return false;
    }
    download->pause();
    const bool isAdopted = adoptMovedData(
        *download,
        withFamiliarTargetsOnly(archive, familiarFolders(surroundings_.defaults, rules())),
        container);
    if (isAdopted) {
        goOnWith(*download);
    }
    return isAdopted;
}

/// One that was given up does not start itself again.
void IntakeRun::goOnWith(engine::DQDownload& download) {
    if (download.status() == engine::DQDownloadStatusAborted) {
        hasReplaced_ = surroundings_.queue.retry(download, true) || hasReplaced_;
    } else {
        download.addToQueue();
    }
}

void IntakeRun::openList(const QString& path) {
    const QString list = canonicalPath(path);
    if (readLists_.contains(list)) {
        return;  // A list may name itself.
    }
    readLists_.insert(list);
    const platform::FileContents contents = platform::readFile(
        surroundings_.queue.context().environment.readablePath(list), mostBytesOfFile);
    if (contents.error) {
        platform::log(
            u"cannot read the list of addresses: %1 (%2)"_s.arg(list, contents.error->text));
        notes_->noteProblem(
            links::filledFormat(links::localized("The list of addresses %@ cannot be read: %@"),
                                {list, readingProblem(*contents.error)}));
        return;
    }
    const QString text = addressListText(contents.data);
    const bool skips = surroundings_.defaults.get(links::settings::skipRedirectingServices);
    const bool isList = isAddressList(text, skips);
    auto addresses = newAddressesInTexts({text}, surroundings_.queue.downloads(),
                                         surroundings_.defaults, surroundings_.frontEnd.questions,
                                         isList ? notes_ : std::make_shared<IntakeNotes>());
    if (isList) {
        lists_.push_back(std::move(addresses));
        return;
    }
    if (!links::TextAddresses::holdsAddress({text}, skips)) {
        notes_->noteProblem(
            links::filledFormat(links::localized("There is no address in the list %@."), {list}));
    }
    offered_.add(list, *addresses);
}

bool IntakeRun::takeOffered() {
    if (offered_.isEmpty()) {
        return false;
    }
    if (!surroundings_.frontEnd.questions.canAsk()) {
        for (const QString& sentence : offered_.notTaken()) {
            notes_->noteProblem(sentence);
        }
        return false;
    }
    std::unique_ptr<AddressSource> wanted = offered_.ask(surroundings_.frontEnd.questions);
    const bool isWanted = wanted != nullptr;
    if (isWanted) {
        lists_.push_back(std::move(wanted));
    }
    return isWanted;
}

const engine::Rules& IntakeRun::rules() const {
    return surroundings_.queue.context().rules;
}

TargetConsent IntakeRun::targetConsent() {
    return {surroundings_.defaults, rules(), surroundings_.frontEnd.questions, *notes_};
}

IntakeRun::Progress IntakeRun::openRequestFile(const platform::Url& url) {
    const std::optional<RequestFile> file = readRequestFile(url.filePath());
    if (!file) {
        return addDownload(url);
    }
    using Answer = TargetConsent::Answer;
    const Answer target = file->targetPath.isEmpty()
                              ? Answer::UsualFolder
                              : targetConsent().toWriteTo(file->targetPath, url.filePath(),
                                                          file->url.absoluteString());
    if (target == Answer::Refused) {
        return Progress::GoesOn;
    }
    QFile::remove(url.filePath());
    if (const engine::DownloadPtr download = appendDownload(file->url)) {
        engine::UserSettings& userSettings = download->userSettings();
        if (target == Answer::Given) {
            userSettings.set(keys::downloadFile, file->targetPath);
        }
        userSettings.set(keys::request, file->request);
        didAdd(download);
    }
    return Progress::GoesOn;
}

IntakeRun::Progress IntakeRun::addDownload(const platform::Url& url) {
    const engine::DownloadPtr download = appendDownload(url);
    if (!download) {
        return Progress::GoesOn;
    }
    if (!request_.isEmpty()) {
        download->userSettings().set(keys::request, request_);
    }
    if (!downloadPageChain_.isEmpty()) {
        download->userSettings().set(keys::downloadPageChain, downloadPageChain_);
    }
    if (!chooseDestination(*download, url)) {
        // It cannot vanish from a list; but one that was put together while the user was asked
        // shows it.
        surroundings_.queue.remove(*download);
        hasReplaced_ = true;
        return Progress::Ends;
    }
    didAdd(download);
    return Progress::GoesOn;
}

engine::DownloadPtr IntakeRun::appendDownload(const platform::Url& url) {
    engine::DownloadPtr download = surroundings_.queue.add(url, autoStart_);
    if (!download) {
        logRefusal(url);
    }
    return download;
}

void IntakeRun::didAdd(const engine::DownloadPtr& download) {
    made_.push_back(download);
}

bool IntakeRun::chooseDestination(engine::DQDownload& download, const platform::Url& url) {
    engine::UserSettings& userSettings = download.userSettings();
    if (!target_.isEmpty()) {
        takeTarget(userSettings);
        return true;
    }
    if (!asksForFolder_) {
        return true;  // Rules and defaults decide.
    }
    if (!chosenFolder_.isEmpty()) {
        userSettings.set(keys::downloadFolder, chosenFolder_);
        return true;
    }
    return given_.isSingle() &&
                   surroundings_.defaults.get(settings::folderPromptAllowsFilenameEditing)
               ? chooseFile(userSettings, url)
               : chooseFolder(userSettings);
}

/// A target that is no folder names the file of the first address, and its folder is for the rest.
void IntakeRun::takeTarget(engine::UserSettings& userSettings) {
    if (targetIsFolder_) {
        userSettings.set(keys::downloadFolder, target_);
        return;
    }
    userSettings.set(keys::downloadFile, target_);
    target_ = stringByDeletingLastPathComponent(target_);
    targetIsFolder_ = links::checkFolderPathAndCreateIfNecessary(target_);
    if (!targetIsFolder_) {
        target_.clear();
    }
}

bool IntakeRun::chooseFile(engine::UserSettings& userSettings, const platform::Url& url) {
    const std::optional<QString> file =
        surroundings_.frontEnd.questions.chooseAbbreviatedDownloadFileForURL(url);
    if (!file) {
        return false;
    }
    userSettings.set(keys::downloadFile, *file);
    chosenFolder_ = stringByDeletingLastPathComponent(*file);
    asksForFolder_ = !chosenFolder_.isEmpty();
    if (asksForFolder_) {
        userSettings.set(keys::downloadFolder, chosenFolder_);
    }
    return true;
}

bool IntakeRun::chooseFolder(engine::UserSettings& userSettings) {
    const std::optional<QString> folder =
        surroundings_.frontEnd.questions.chooseAbbreviatedDownloadsFolder();
    if (!folder) {
        return false;
    }
    chosenFolder_ = *folder;
    userSettings.set(keys::downloadFolder, chosenFolder_);
    return true;
}

}  // namespace app
