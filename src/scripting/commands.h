#pragma once

#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/main_controller.h"
#include "platform/base/timer.h"
#include "scripting/bus/reply.h"
#include "scripting/hand_overs/hand_overs.h"

namespace scripting {

/// What each command of the interface does. `arguments` fit its signature. Main thread.
class Commands {
public:
    /// The controller has read its queue, and outlives this.
    Commands(app::DQMainController& controller, const QString& supportFolder);

    using Command = void (Commands::*)(const QVariantList& arguments, const Reply& reply);
    struct Entry {
        Command command;
        QString signature;  ///< Of its arguments.
    };
    /// Null: the interface has no such command.
    [[nodiscard]] static const Entry* find(const QString& name);

private:
    void download(const QVariantList& arguments, const Reply& reply);
    void numberOfDownloads(const QVariantList& arguments, const Reply& reply);
    void numberOfFailedDownloads(const QVariantList& arguments, const Reply& reply);
    void pauseAll(const QVariantList& arguments, const Reply& reply);
    void queuePaused(const QVariantList& arguments, const Reply& reply);
    void cancelAll(const QVariantList& arguments, const Reply& reply);
    void list(const QVariantList& arguments, const Reply& reply);
    void add(const QVariantList& arguments, const Reply& reply);
    void pause(const QVariantList& arguments, const Reply& reply);
    void resume(const QVariantList& arguments, const Reply& reply);
    void remove(const QVariantList& arguments, const Reply& reply);
    void move(const QVariantList& arguments, const Reply& reply);
    void waitUntilDone(const QVariantList& arguments, const Reply& reply);
    void handOver(const QVariantList& arguments, const Reply& reply);
    void handOverAll(const QVariantList& arguments, const Reply& reply);
    void withdraw(const QVariantList& arguments, const Reply& reply);
    void browserFilter(const QVariantList& arguments, const Reply& reply);
    void show(const QVariantList& arguments, const Reply& reply);

    /// Nothing: one of them is unknown, which is answered.
    [[nodiscard]] std::optional<app::Downloads> downloadsNamed(const QVariant& identities,
                                                               const Reply& reply) const;
    void answerWaiting();

    app::DQMainController& controller_;
    HandOvers handOvers_;
    std::vector<Reply> waiting_;  ///< For the end of all downloads.
    platform::Timer look_;        ///< For that end.
    QObject listener_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace scripting
