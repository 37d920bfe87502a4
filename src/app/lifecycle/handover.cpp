#include "app/lifecycle/handover.h"

#include <sys/socket.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QtEndian>

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

// A message is its length in four bytes (big endian) and that many bytes: its id, the activation
// token and the items as UTF-8, with a NUL between two. The answer is one byte, and only when the
// sender has said with another that it heard it is the message delivered: by then a sender that
// could not wait any longer has gone, and whoever started it will try again.
constexpr quint32 maximumLength = 4 << 20;  // The system's limit for arguments is half of that.
constexpr qsizetype lengthSize = sizeof(quint32);
constexpr char accepted = '+';
constexpr char confirmed = '!';
constexpr qsizetype mostIds = 1000;
constexpr int timeout = 5000;

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

Handover decoded(const QByteArray& body) {
    QStringList parts;
    for (const QByteArray& part : body.split('\0')) {
        parts.append(QString::fromUtf8(part));
    }
    const QString id = parts.takeFirst();
    const QString token = parts.isEmpty() ? QString() : parts.takeFirst();
    return {parts, token, id};
}

bool isSameUser(const QLocalSocket& socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer,
                        &size) == 0 &&
           peer.uid == ::getuid();
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
        connect(socket, &QObject::destroyed, this, [this, socket] { answered_.remove(socket); });
        if (!isSameUser(*socket)) {
            socket->abort();
            continue;
        }
        socket->setReadBufferSize(lengthSize + maximumLength);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { read(*socket); });
    }
}

void HandoverReceiver::close() {
    server_.close();
    for (QLocalSocket* socket : server_.findChildren<QLocalSocket*>()) {
        socket->abort();
    }
}

void HandoverReceiver::read(QLocalSocket& socket) {
    if (!answered_.contains(&socket)) {
        takeMessage(socket);
        return;
    }
    char word = 0;
    const bool isConfirmed = socket.getChar(&word) && word == confirmed;
    const Handover handover = answered_.take(&socket);
    socket.disconnectFromServer();
    if (isConfirmed) {
        deliver(handover);
    }
}

void HandoverReceiver::takeMessage(QLocalSocket& socket) {
    const QByteArray head = socket.peek(lengthSize);
    if (head.size() < lengthSize) {
        return;
    }
    const auto length = qFromBigEndian<quint32>(head.constData());
    if (length > maximumLength) {
        socket.abort();
        return;
    }
    if (socket.bytesAvailable() < lengthSize + static_cast<qsizetype>(length)) {
        return;
    }
    const QByteArray message = socket.read(lengthSize + static_cast<qsizetype>(length));
    answered_.insert(&socket, decoded(message.mid(lengthSize)));
    socket.write(&accepted, 1);
    socket.flush();
}

void HandoverReceiver::deliver(const Handover& handover) {
    if (!handover.id.isEmpty()) {
        if (deliveredIds_.contains(handover.id)) {
            return;
        }
        deliveredIds_.append(handover.id);
        if (deliveredIds_.size() > mostIds) {
            deliveredIds_.removeFirst();
        }
    }
    receive_(handover);
}

bool canHandOver(const QString& supportFolder, const QString& folder) {
    QLocalSocket socket;
    socket.connectToServer(socketPath(supportFolder, folder));
    return socket.waitForConnected(timeout) && isSameUser(socket);
}

std::optional<QString> handOver(const Handover& handover, const QString& supportFolder,
                                const QString& folder) {
    const QByteArray message = encoded(handover);
    if (message.size() > lengthSize + static_cast<qsizetype>(maximumLength)) {
        return u"these are too many to hand over at once"_s;
    }
    QLocalSocket socket;
    socket.connectToServer(socketPath(supportFolder, folder));
    char answer = 0;
    if (socket.waitForConnected(timeout) && isSameUser(socket) &&
        socket.write(message) == message.size() && socket.waitForReadyRead(timeout) &&
        socket.getChar(&answer) && answer == accepted && socket.putChar(confirmed) &&
        socket.waitForBytesWritten(timeout)) {
        return {};
    }
    return u"the process that has the queue does not answer (%1)"_s.arg(socket.errorString());
}

}  // namespace app
