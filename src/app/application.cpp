#include "app/application.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QUuid>
#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "app/authentication/http_authentication_manager.h"
#include "app/checksums/sibling_checksums.h"
#include "app/folders/security_scoped_bookmark_manager.h"
#include "app/history/historian.h"
#include "app/intake/url_handler_command.h"
#include "app/lifecycle/handover.h"
#include "app/lifecycle/instance_lock.h"
#include "app/lifecycle/launch_items.h"
#include "app/lifecycle/lifecycle.h"
#include "app/lifecycle/settings_effects.h"
#include "app/main_controller.h"
#include "app/pages/download_pages.h"
#include "app/settings.h"
#include "app/status/queue_status_reporter.h"
#include "engine/environment.h"
#include "engine/workers/http_client_setup.h"
#include "http/http_session.h"
#include "links/format/numbers.h"
#include "links/names/sort_keys.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/base/run_loop.h"
#include "platform/base/user_defaults.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"
#include "platform/files/mount_watcher.h"
#include "platform/net/cookie_storage.h"
#include "platform/net/credential_storage.h"
#include "platform/session/applications.h"
#include "platform/session/power.h"
#include "platform/session/workspace.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Installs something where the whole program looks for it, for as long as this lives.
template <typename Object>
class Installed {
public:
    Installed(void (*install)(Object*), Object& object) : install_(install) { install_(&object); }
    ~Installed() { install_(nullptr); }
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;

private:
    void (*install_)(Object*);
};

/// The program's settings, with what this run was given above what is stored.
class StandardDefaults {
public:
    StandardDefaults(platform::RunLoop& loop, const QVariantMap& arguments)
        : defaults(platform::userConfigFolder(), platform::defaultsDomain, &loop) {
        defaults.setArguments(arguments);
        platform::registerSettings(defaults);
        platform::installStandardDefaults(&defaults);
        links::setSharedNumberStyle(links::numberStyle(defaults));
        links::setSortPrefixes(links::sortPrefixesString(defaults));
        followDebugLog();
        observation_ = defaults.observe([this](const QString& key) {
            if (key == settings::debugLog.name()) {
                followDebugLog();
            }
        });
    }
    ~StandardDefaults() { platform::installStandardDefaults(nullptr); }
    StandardDefaults(const StandardDefaults&) = delete;
    StandardDefaults& operator=(const StandardDefaults&) = delete;

    platform::UserDefaults defaults;

private:
    void followDebugLog() { platform::setDebugLogEnabled(defaults.get(settings::debugLog)); }

    platform::Observation observation_;
};

/// What the engine needs of a front end and of the machine.
engine::Environment engineEnvironment(const FrontEnd& frontEnd,
                                      DQHTTPAuthenticationManager& authentication,
                                      DQSecurityScopedBookmarkManager& folders,
                                      std::shared_ptr<engine::PageReader> pageReader) {
    engine::Environment environment;
    environment.confirmWriteAccess = [&folders](const QString& folder, const QString& explanation) {
        using Panel = DQSecurityScopedBookmarkManager::Panel;
        const auto access = folders.confirmWriteAccess(
            folder, explanation.isEmpty() ? Panel::Never : Panel::Shown, explanation);
        return engine::WriteAccess{access.isGranted, access.bookmarkPath, access.path};
    };
    environment.readablePath = [&folders](const QString& path) {
        const auto access =
            folders.confirmReadAccess(path, DQSecurityScopedBookmarkManager::Panel::Shown);
        return access.isGranted ? access.path : path;
    };
    environment.stopAccessingBookmark = [&folders](const QString& path) {
        folders.stopAccessingBookmark(path);
    };
    environment.openWithApplication = platform::openFileWithApplication;
    environment.acquireAuthentication = [&authentication](http::HTTPRequest& request) {
        authentication.acquireAuthenticationForRequest(request);
    };
    environment.cancelAuthentication = [&authentication](http::HTTPRequest& request) {
        authentication.cancelAuthenticationForRequest(request);
    };
    environment.isModalWindowUp = [&presence = frontEnd.presence] {
        return presence.isShowingModalWindow();
    };
    environment.beep = [&feedback = frontEnd.feedback] { feedback.beep(); };
    environment.pageReader = std::move(pageReader);
    return environment;
}

Workspace desktopWorkspace() {
    return {platform::openURL, platform::revealFile, platform::openFileWithApplication};
}

/// Nothing that was to be written may be lost, but a disk that does not answer must not keep the
/// program for ever.
class EndOfDisks {
public:
    EndOfDisks(platform::Disks& disks, bool& hasAnswered)
        : disks_(disks), hasAnswered_(hasAnswered) {}
    ~EndOfDisks() {
        constexpr std::chrono::seconds patience(5);
        hasAnswered_ = disks_.finish(patience);
        if (!hasAnswered_) {
            platform::log(u"a disk does not answer; what was to be written to it is given up"_s,
                          platform::LogLevel::Error);
        }
    }
    EndOfDisks(const EndOfDisks&) = delete;
    EndOfDisks& operator=(const EndOfDisks&) = delete;

private:
    platform::Disks& disks_;
    bool& hasAnswered_;
};

QString damagedQueueText(const QString& keptPath) {
    return keptPath.isEmpty()
               ? links::localized(
                     "The queue of an earlier run cannot be read and will not be touched.")
               : links::filledFormat(
                     links::localized(
                         "The queue of an earlier run cannot be read; it was kept as %@."),
                     {keptPath});
}

/// Settings of one run would hold for all that the running program does.
QString settingsNotHandedOverText(const QVariantMap& settings) {
    return links::localized(
               "Orlop is running already, and a setting for one run cannot be handed to it: %1. "
               "Nothing was handed over.")
        .arg(u"-\"%1\""_s.arg(settings.keys().join(u"\", -\""_s)));
}

}  // namespace

/// Everything that exists between start and stop, in the order of making; it goes in reverse.
class Application::Private {
public:
    using Receive = HandoverReceiver::Receive;

    Private(const QVariantMap& arguments, const FrontEnd& frontEnd, Receive receive,
            bool& haveDisksAnswered)
        : standardDefaults(loop, arguments),
          endOfDisks(disks, haveDisksAnswered),
          authentication(frontEnd.authentication, standardDefaults.defaults),
          folders(standardDefaults.defaults, clock, frontEnd.questions),
          environment(engineEnvironment(frontEnd, authentication, folders, downloadPages)),
          historian(platform::userDataFolder(), standardDefaults.defaults, disks, loop),
          controller(
              {loop, standardDefaults.defaults, disks, *power, environment, workspace, frontEnd}),
          status({controller, standardDefaults.defaults, loop, frontEnd}),
          settingsEffects(standardDefaults.defaults, controller, frontEnd.list,
                          downloadPages->ruleStore()),
          urlHandler(controller, frontEnd.questions),
          receiver(platform::userDataFolder(), platform::runtimeFolder(), std::move(receive)) {
        engine::configureHTTPClient(standardDefaults.defaults, controller.queue().throttle());
        controller.setHistory(&historian);
        controller.setStatusReporter(&status);
    }
    ~Private() { controller.setStatusReporter(nullptr); }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    platform::SystemClock clock;
    platform::RunLoop loop{clock};
    Installed<platform::RunLoop> installedLoop{platform::installMainRunLoop, loop};
    platform::QtRunLoopDriver driver{loop};
    platform::Disks disks{loop};
    StandardDefaults standardDefaults;
    std::unique_ptr<platform::CookieStorage> cookies{
        platform::makeCookieStorage(platform::userDataFolder() + u"/Cookies"_s)};
    Installed<platform::CookieStorage> installedCookies{platform::installSharedCookieStorage,
                                                        *cookies};
    std::unique_ptr<platform::CredentialStorage> secrets{
        platform::makeSecretServiceCredentialStorage()};
    Installed<platform::CredentialStorage> installedSecrets{
        platform::installSharedCredentialStorage, *secrets};
    http::HTTPSession session{clock};
    EndOfDisks endOfDisks;
    std::unique_ptr<platform::Power> power{platform::makePower()};
    std::shared_ptr<DownloadPages> downloadPages{
        std::make_shared<DownloadPages>(standardDefaults.defaults, loop)};
    DQHTTPAuthenticationManager authentication;
    DQSecurityScopedBookmarkManager folders;
    Installed<DQSecurityScopedBookmarkManager> installedFolders{installBookmarkManager, folders};
    const engine::Environment environment;
    const Workspace workspace = desktopWorkspace();
    DQHistorian historian;
    Installed<DQHistorian> installedHistorian{installHistorian, historian};
    DQMainController controller;
    Installed<DQMainController> installedController{installMainController, controller};
    QueueStatusReporter status;
    SettingsEffects settingsEffects;
    SiblingChecksums siblingChecksums{controller};
    DQURLHandlerCommand urlHandler;
    HandoverReceiver receiver;
    platform::MountWatcher mountWatcher{[this] { controller.mountsDidChange(); }};
};

Application::Application(Invocation invocation) : invocation_(std::move(invocation)) {}

Application::~Application() = default;

Application::Start Application::start(const FrontEnd& frontEnd, const ShowWindows& showWindows) {
    // A list of addresses may be large, and nobody needs it once it is opened.
    const LaunchItems items = launchItems(std::exchange(invocation_.items, {}));
    const Start start = claimOrHandOver(items);
    return start.outcome == Start::Outcome::Started ? run(frontEnd, showWindows, items) : start;
}

std::optional<Application::Start> Application::handOverOnly() {
    const Start start = claimOrHandOver(launchItems(invocation_.items));
    return start.outcome == Start::Outcome::Started ? std::nullopt : std::optional(start);
}

/// The owner of the queue may be only just starting or ending: then it has the lock and does not
/// answer, but that passes.
Application::Start Application::claimOrHandOver(const LaunchItems& items) {
    constexpr std::chrono::seconds patience(10);
    constexpr std::chrono::milliseconds nap(20);
    const QString supportFolder = platform::userDataFolder();
    const Handover handover{items.all(), qEnvironmentVariable("XDG_ACTIVATION_TOKEN"),
                            QUuid::createUuid().toString()};
    for (const QDeadlineTimer deadline(patience);;) {
        switch (lock_.claim(supportFolder)) {
            case InstanceLock::Claim::Owned:
                return {};
            case InstanceLock::Claim::Impossible:
                return {Start::Outcome::Failed, lock_.problem()};
            case InstanceLock::Claim::Taken:
                break;
        }
        if (invocation_.isInBackground && items.isEmpty()) {
            return {Start::Outcome::HandedOver, {}};
        }
        if (!invocation_.settings.isEmpty() &&
            canHandOver(supportFolder, platform::runtimeFolder())) {
            return {Start::Outcome::Failed, settingsNotHandedOverText(invocation_.settings)};
        }
        const HandoverEnd end = handOver(handover, supportFolder, platform::runtimeFolder());
        if (end.problem.isEmpty()) {
            return {Start::Outcome::HandedOver, {}};
        }
        if (end.isFinal || deadline.hasExpired()) {
            return {Start::Outcome::Failed, u"Orlop is running already; "_s + end.problem};
        }
        std::this_thread::sleep_for(nap);
    }
}

Application::Start Application::run(const FrontEnd& frontEnd, const ShowWindows& showWindows,
                                    const LaunchItems& items) {
    QVariantMap given = invocation_.settings;
    if (invocation_.isInBackground) {
        given.insert(settings::mainWindowVisibleOnLaunch.name(), false);
    }
    private_ = std::make_unique<Private>(
        given, frontEnd,
        [this](const Handover& handover, const Saved& saved) {
            receive(handover.items, handover.activationToken, saved);
        },
        haveDisksAnswered_);
    HandoverReceiver& receiver = private_->receiver;
    if (!receiver.problem().isEmpty()) {
        platform::log(receiver.problem(), platform::LogLevel::Warning);
    }
    DQMainController& controller = private_->controller;
    QObject::connect(&controller, &DQMainController::terminated, &receiver,
                     [&receiver] { receiver.close(); });
    Start start;
    QObject::connect(&controller, &DQMainController::queueFileDamaged, &receiver,
                     [&start](const QString& path) { start.problem = damagedQueueText(path); });
    controller.readQueue();
    QObject::disconnect(&controller, &DQMainController::queueFileDamaged, &receiver, nullptr);
    if (showWindows) {
        showWindows(controller);
    }
    controller.lifecycle().willFinishLaunching();
    controller.applicationDidFinishLaunching();
    open(items);
    return start;
}

void Application::receive(const QStringList& given, const QString& activationToken,
                          const Saved& saved) {
    const LaunchItems items = launchItems(given);
    const Presence& presence = controller().surroundings().frontEnd.presence;
    // Who hands something over does not ask for the window: it comes only where it was put away.
    const bool comesBack = presence.isHidden() && !controller().lifecycle().retreats();
    if (activate_ && (items.isEmpty() || comesBack)) {
        activate_(activationToken);
    }
    if (items.isEmpty()) {
        controller().lifecycle().applicationShouldHandleReopen();
        saved(true);
        return;
    }
    open(items);
    controller().lifecycle().giveFeedback();
    controller().whenTakenIn([this, saved] { controller().whenSaved(saved); });
}

void Application::open(const LaunchItems& items) {
    if (!items.paths.isEmpty()) {
        controller().openFiles(items.paths, true, false);
    }
    QStringList addresses = items.addresses;
    const auto own =
        std::stable_partition(addresses.begin(), addresses.end(),
                              [](const QString& address) { return !hasProgramScheme(address); });
    const QStringList handedOver(own, addresses.end());
    addresses.erase(own, addresses.end());
    if (!addresses.isEmpty()) {
        controller().dropPasteboard({addresses, {}});
    }
    for (const QString& address : handedOver) {
        private_->urlHandler.perform(address);
    }
}

void Application::setActivationHandler(std::function<void(const QString&)> handler) {
    activate_ = std::move(handler);
}

DQMainController& Application::controller() {
    return private_->controller;
}

QueueStatusReporter& Application::statusReporter() {
    return private_->status;
}

bool Application::stop() {
    private_.reset();
    return haveDisksAnswered_;
}

}  // namespace app
