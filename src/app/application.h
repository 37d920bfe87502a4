#pragma once

#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <optional>

#include "app/front_end.h"
#include "app/lifecycle/instance_lock.h"

namespace app {

class DQMainController;
class QueueStatusReporter;
struct LaunchItems;

/// The core of the program, put together: what `orlop` and `orlop-terminal` have in common.
///
/// Makes and installs, in this order: main run loop, log, defaults, cookies, the HTTP client, the
/// engine's surroundings, the history and the controller; all of it goes in the reverse order. One
/// for the process, on the main thread, inside a QCoreApplication.
class Application {
public:
    /// What the command line says.
    struct Invocation {
        QVariantMap settings;  ///< User defaults for this run, above the stored ones.
        QStringList items;     ///< Addresses and paths to open.
        /// Shows no window, and a running process is not asked to show its own.
        bool isInBackground = false;
    };

    explicit Application(Invocation invocation);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    struct Start {
        enum class Outcome {
            Started,
            /// Another process owns the queue and has taken the arguments over.
            HandedOver,
            Failed,
        };
        Outcome outcome = Outcome::Started;
        /// What went wrong, for people; also when it started all the same.
        QString problem;
    };
    /// `showWindows` is called with the controller when its queue has been read and before
    /// anything is selected or opened; a window is set up there.
    using ShowWindows = std::function<void(DQMainController&)>;
    [[nodiscard]] Start start(const FrontEnd& frontEnd, const ShowWindows& showWindows = {});
    /// Only hands over to a process that owns the queue, which needs no front end. Nothing: there
    /// is none.
    [[nodiscard]] std::optional<Start> handOverOnly();

    /// What another process was asked to open, when it brings `activationToken` (the desktop's
    /// leave to take the focus; may be empty).
    void setActivationHandler(std::function<void(const QString& activationToken)> handler);

    /// Opens addresses, and absolute paths, and shows the program as one that is started again,
    /// with the desktop's leave to take the focus (may be empty). `saved`: see `Handover`.
    using Saved = std::function<void(bool isSaved)>;
    void receive(const QStringList& items, const QString& activationToken, const Saved& saved);

    [[nodiscard]] DQMainController& controller();
    [[nodiscard]] QueueStatusReporter& statusReporter();

    /// Writes what has not been written and takes everything down. Does not ask: that is
    /// `DQMainController::shouldQuit`. False: a disk does not answer, and threads still wait for
    /// it, so that the process must end by `std::_Exit`.
    [[nodiscard]] bool stop();

private:
    class Private;

    [[nodiscard]] Start claimOrHandOver(const LaunchItems& items);
    [[nodiscard]] Start run(const FrontEnd& frontEnd, const ShowWindows& showWindows,
                            const LaunchItems& items);
    void open(const LaunchItems& items);

    Invocation invocation_;
    InstanceLock lock_;
    std::function<void(const QString&)> activate_;
    bool haveDisksAnswered_ = true;
    std::unique_ptr<Private> private_;
};

}  // namespace app
