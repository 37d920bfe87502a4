#pragma once

#include <QHash>
#include <QList>
#include <QLocalServer>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <functional>
#include <utility>

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
    /// To be called when what was handed over is on disk, or with false if it cannot be; then its
    /// sender is told.
    using Saved = std::function<void(bool isSaved)>;
    using Receive = std::function<void(const Handover&, const Saved&)>;

    /// For the queue in `supportFolder`, whose lock this process holds.
    HandoverReceiver(const QString& supportFolder, const QString& folder, Receive receive);

    /// Why nothing can be received, for people. Empty: it can.
    [[nodiscard]] const QString& problem() const { return problem_; }

    /// Takes nothing any more; whoever is not answered yet has to look for another owner.
    void close();

private:
    /// What was delivered and is not saved yet.
    struct Pending {
        QList<QPointer<QLocalSocket>> senders;
        bool isLarge = false;
    };

    void accept();
    void admit(QLocalSocket& socket);
    void forget(QLocalSocket* socket);
    void read(QLocalSocket& socket);
    void takeMessage(QLocalSocket& socket);
    void takeWord(QLocalSocket& socket);
    /// False: the turn of this long message is still to come.
    [[nodiscard]] bool hasTurn(QLocalSocket& socket);
    void giveTurns();
    void deliver(const Handover& handover, QLocalSocket& socket, bool isLarge);
    void didSave(const QString& key, bool isSaved);
    static void tell(QLocalSocket& socket, bool isSaved);

    // They go after the sockets.
    /// Those that have not handed over everything yet, the oldest first.
    QList<QLocalSocket*> reading_;
    /// Of these, those whose message is long: the ones that wait for their turn, and that have it.
    QList<QLocalSocket*> waitingForTurn_;
    QSet<QLocalSocket*> haveTurn_;
    /// Messages that were answered and whose senders have not yet said that they still wait.
    QHash<QLocalSocket*, Handover> answered_;
    QHash<QString, Pending> pending_;
    qsizetype numberOfLargePending_ = 0;
    /// Of what was delivered, the last ones, and whether they could be saved.
    QList<std::pair<QString, bool>> savedIds_;
    QLocalServer server_;
    Receive receive_;
    QString problem_;
};

/// Whether somebody listens for what may be handed over.
[[nodiscard]] bool canHandOver(const QString& supportFolder, const QString& folder);

struct HandoverEnd {
    QString problem = {};  ///< For people. Empty: it was taken and saved.
    bool isFinal = true;   ///< Another attempt would end the same.
};

/// The other end: waits until the owner of the queue in `supportFolder` has saved it.
[[nodiscard]] HandoverEnd handOver(const Handover& handover, const QString& supportFolder,
                                   const QString& folder);

}  // namespace app
