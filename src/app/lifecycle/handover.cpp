#include "app/lifecycle/handover.h"

#include <sys/socket.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QTimer>
#include <QUuid>
#include <QtEndian>
#include <algorithm>
#include <chrono>
#include <optional>

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

// A message is its length in four bytes (big endian) and that many bytes: its id, the activation
// token and the items as UTF-8, with a NUL between two. The answer is one byte, and only when the
// sender has said with another that it heard it is the message delivered: by then a sender that
// could not wait any longer has gone, and whoever started it will try again. A last byte says
// whether what it led to is on disk; until then its owner may be killed and know nothing of it.
constexpr quint32 maximumLength = 4 << 20;  // The system's limit for arguments is half of that.
constexpr qsizetype lengthSize = sizeof(quint32);
constexpr char accepted = '+';
constexpr char confirmed = '!';
constexpr char saved = '*';
constexpr char notSaved = '-';
constexpr qsizetype mostIds = 1000;
constexpr int timeout = 5000;
/// A question to the user, or a long list, may stand before the saving.
constexpr int savingTimeout = 60'000;

// Whoever floods us fills no memory here and keeps nobody else out: short messages are read at
// once, long ones a few at a time, and the newest sender is never the one that has to go.
constexpr qsizetype shortLength = 32 << 10;
constexpr qsizetype longestItem = 128 << 10;  // The system's limit for one argument.
constexpr qsizetype longestId = 128, longestToken = 4 << 10;
constexpr qsizetype mostReading = 100, mostPending = 100, mostLarge = 2;
/// What a sender may take to hand over everything, once it is its turn.
constexpr std::chrono::seconds readingTimeout(5);

/// One for each queue, as several can be open at a time under different data folders.
QString socketPath(const QString& supportFolder, const QString& folder) {
    const QByteArray queue = QFileInfo(supportFolder).canonicalFilePath().toUtf8();
    const QByteArray hash = QCryptographicHash::hash(queue, QCryptographicHash::Sha256);
    return u"%1/open-%2.socket"_s.arg(folder, QString::fromLatin1(hash.toHex().left(16)));
}

QByteArray encoded(const Handover& handover) {
    QByteArray body = handover.id.toUtf8() + '\0' + handover.activationToken.toUtf8();
    for (const QString& item : handover.items) {
        body += '\0' + item.toUtf8();
    }
    QByteArray message(lengthSize, Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(body.size()), message.data());
    return message + body;
}

/// Nothing: no sender of ours has made it.
std::optional<Handover> decoded(const QByteArray& body) {
    QStringList parts;
    for (const QByteArray& part : body.split('\0')) {
        if (part.size() > longestItem) {
            return {};
        }
        parts.append(QString::fromUtf8(part));
    }
    const QString id = parts.takeFirst();
    const QString token = parts.isEmpty() ? QString() : parts.takeFirst();
    if (id.size() > longestId || token.size() > longestToken) {
        return {};
    }
    return Handover{parts, token, id};
}

bool isSameUser(const QLocalSocket& socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer,
                        &size) == 0 &&
           peer.uid == ::getuid();
}

/// Nothing: none came in time. What has come while something was being written is waited for in
/// vain.
std::optional<char> answerOf(QLocalSocket& socket, int milliseconds) {
    char answer = 0;
    const bool hasCome = socket.bytesAvailable() > 0 || socket.waitForReadyRead(milliseconds);
    return hasCome && socket.getChar(&answer) ? std::optional(answer) : std::nullopt;
}

}  // namespace

HandoverReceiver::HandoverReceiver(const QString& supportFolder, const QString& folder,
                                   Receive receive)
    : receive_(std::move(receive)) {
    const QString path = socketPath(supportFolder, folder);
    QDir().mkpath(folder);
    QLocalServer::removeServer(path);  // Left by a process that crashed: the lock is ours.
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, &HandoverReceiver::accept);
    if (server_.listen(path)) {
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    } else {
        problem_ = u"cannot listen at %1: %2"_s.arg(path, server_.errorString());
    }
}

void HandoverReceiver::accept() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (isSameUser(*socket)) {
            admit(*socket);
        } else {
            socket->abort();
        }
    }
}

void HandoverReceiver::admit(QLocalSocket& socket) {
    socket.setReadBufferSize(shortLength);
    reading_.append(&socket);
    connect(&socket, &QObject::destroyed, this, [this, gone = &socket] { forget(gone); });
    connect(&socket, &QLocalSocket::readyRead, this, [this, &socket] { read(socket); });
    auto* const timer = new QTimer(&socket);
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, &socket, [this, &socket] {
        if (reading_.contains(&socket)) {
            socket.abort();
        }
    });
    timer->start(readingTimeout);
    if (reading_.size() > mostReading) {
        QLocalSocket* const oldest = reading_.first();
        forget(oldest);
        oldest->abort();
    }
}

void HandoverReceiver::forget(QLocalSocket* socket) {
    reading_.removeOne(socket);
    waitingForTurn_.removeOne(socket);
    haveTurn_.remove(socket);
    answered_.remove(socket);
    giveTurns();
}

void HandoverReceiver::close() {
    server_.close();
    for (QLocalSocket* socket : server_.findChildren<QLocalSocket*>()) {
        socket->abort();
    }
}

void HandoverReceiver::read(QLocalSocket& socket) {
    if (!reading_.contains(&socket)) {
        return;
    }
    if (answered_.contains(&socket)) {
        takeWord(socket);
    } else {
        takeMessage(socket);
    }
}

void HandoverReceiver::takeMessage(QLocalSocket& socket) {
    const QByteArray head = socket.peek(lengthSize);
    if (head.size() < lengthSize) {
        return;
    }
    const auto length = qFromBigEndian<quint32>(head.constData());
    const auto size = lengthSize + static_cast<qsizetype>(length);
    if (length > maximumLength) {
        socket.abort();
        return;
    }
    if ((size > shortLength && !hasTurn(socket)) || socket.bytesAvailable() < size) {
        return;
    }
    const auto handover = decoded(socket.read(size).mid(lengthSize));
    if (!handover) {
        socket.abort();
        return;
    }
    answered_.insert(&socket, *handover);
    socket.write(&accepted, 1);
    socket.flush();
}

bool HandoverReceiver::hasTurn(QLocalSocket& socket) {
    if (!haveTurn_.contains(&socket) && !waitingForTurn_.contains(&socket)) {
        socket.findChild<QTimer*>()->stop();
        waitingForTurn_.append(&socket);
        giveTurns();
    }
    return haveTurn_.contains(&socket);
}

void HandoverReceiver::giveTurns() {
    while (!waitingForTurn_.isEmpty() && haveTurn_.size() + numberOfLargePending_ < mostLarge) {
        QLocalSocket* const socket = waitingForTurn_.takeFirst();
        haveTurn_.insert(socket);
        socket->findChild<QTimer*>()->start();
        socket->setReadBufferSize(lengthSize + static_cast<qsizetype>(maximumLength));
    }
}

void HandoverReceiver::takeWord(QLocalSocket& socket) {
    char word = 0;
    const bool isConfirmed = socket.getChar(&word) && word == confirmed;
    const Handover handover = answered_.take(&socket);
    const bool isLarge = haveTurn_.remove(&socket);
    reading_.removeOne(&socket);
    if (isConfirmed) {
        deliver(handover, socket, isLarge);
    } else {
        socket.abort();
    }
    giveTurns();
}

void HandoverReceiver::deliver(const Handover& handover, QLocalSocket& socket, bool isLarge) {
    const QString key = handover.id.isEmpty() ? QUuid::createUuid().toString() : handover.id;
    const auto known = std::find_if(savedIds_.cbegin(), savedIds_.cend(),
                                    [&](const auto& entry) { return entry.first == key; });
    if (known != savedIds_.cend()) {
        tell(socket, known->second);
        return;
    }
    const bool isNew = !pending_.contains(key);
    if (pending_.size() >= mostPending || pending_.value(key).senders.size() >= mostPending) {
        socket.abort();
        return;
    }
    pending_[key].senders.append(&socket);
    if (!isNew) {
        return;
    }
    pending_[key].isLarge = isLarge;
    numberOfLargePending_ += isLarge ? 1 : 0;
    receive_(handover, [receiver = QPointer(this), key](bool isSaved) {
        if (receiver) {
            receiver->didSave(key, isSaved);
        }
    });
}

void HandoverReceiver::didSave(const QString& key, bool isSaved) {
    savedIds_.append({key, isSaved});
    if (savedIds_.size() > mostIds) {
        savedIds_.removeFirst();
    }
    const Pending done = pending_.take(key);
    numberOfLargePending_ -= done.isLarge ? 1 : 0;
    for (const QPointer<QLocalSocket>& socket : done.senders) {
        if (socket) {
            tell(*socket, isSaved);
        }
    }
    giveTurns();
}

void HandoverReceiver::tell(QLocalSocket& socket, bool isSaved) {
    socket.write(isSaved ? &saved : &notSaved, 1);
    socket.flush();
    socket.disconnectFromServer();
}

bool canHandOver(const QString& supportFolder, const QString& folder) {
    QLocalSocket socket;
    socket.connectToServer(socketPath(supportFolder, folder));
    return socket.waitForConnected(timeout) && isSameUser(socket);
}

HandoverEnd handOver(const Handover& handover, const QString& supportFolder,
                     const QString& folder) {
    const QByteArray message = encoded(handover);
    if (message.size() > lengthSize + static_cast<qsizetype>(maximumLength)) {
        return {u"these are too many to hand over at once"_s};
    }
    if (std::any_of(handover.items.begin(), handover.items.end(),
                    [](const QString& item) { return item.toUtf8().size() > longestItem; })) {
        return {u"an address of them is too long to hand over"_s};
    }
    QLocalSocket socket;
    socket.connectToServer(socketPath(supportFolder, folder));
    if (socket.waitForConnected(timeout) && isSameUser(socket) &&
        socket.write(message) == message.size() && answerOf(socket, timeout) == accepted &&
        socket.putChar(confirmed) && socket.waitForBytesWritten(timeout)) {
        if (const auto answer = answerOf(socket, savingTimeout)) {
            return answer == saved
                       ? HandoverEnd{}
                       : HandoverEnd{u"the process that has the queue cannot save it"_s};
        }
    }
    return {u"the process that has the queue does not answer (%1)"_s.arg(socket.errorString()),
            false};
}

}  // namespace app
