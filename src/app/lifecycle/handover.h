#pragma once

#include <QHash>
#include <QLocalServer>
#include <QObject>
#include <QStringList>
#include <functional>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QLocalSocket)

namespace app {

/// What a process that finds the queue taken hands to its owner.
struct Handover {
    QStringList items;        ///< Addresses and absolute paths.
    QString activationToken;  ///< The desktop's leave to take the focus; may be empty.
    /// The same at each attempt to hand over the same, so that it arrives once. Empty: unknown.
    QString id = {};
};

/// The owner's end: a socket in `folder` that only the same user may connect to. Runs in Qt's event
/// loop of the thread that makes it. What a sender gave up before it was answered is dropped, and
/// what comes again under the same id.
class HandoverReceiver final : public QObject {
    Q_OBJECT

public:
    using Receive = std::function<void(const Handover&)>;

    /// For the queue in `supportFolder`, whose lock this process holds.
    HandoverReceiver(const QString& supportFolder, const QString& folder, Receive receive);

    /// Why nothing can be received, for people. Empty: it can.
    [[nodiscard]] const QString& problem() const { return problem_; }

    /// Takes nothing any more; whoever is not answered yet has to look for another owner.
    void close();

private:
    void accept();
    void read(QLocalSocket& socket);
    void takeMessage(QLocalSocket& socket);
    void deliver(const Handover& handover);

    /// Messages that were answered and whose senders have not yet said that they still wait. Goes
    /// after the sockets.
    QHash<QLocalSocket*, Handover> answered_;
    /// Of what was delivered, the last ones.
    QStringList deliveredIds_;
    QLocalServer server_;
    Receive receive_;
    QString problem_;
};

/// Whether somebody listens for what may be handed over.
[[nodiscard]] bool canHandOver(const QString& supportFolder, const QString& folder);

/// The other end: waits until the owner of the queue in `supportFolder` has taken it. Nothing: it
/// has; otherwise why not, for people.
[[nodiscard]] std::optional<QString> handOver(const Handover& handover,
                                              const QString& supportFolder, const QString& folder);

}  // namespace app
