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

// A message is its length in four bytes (big endian) and that many bytes: the activation token and
// the items as UTF-8, with a NUL between two. The answer is one byte.
constexpr quint32 maximumLength = 4 << 20;  // The system's limit for arguments is half of that.
constexpr qsizetype lengthSize = sizeof(quint32);
constexpr char accepted = '+';
constexpr int timeout = 5000;

/// One for each queue, as several can be open at a time under different data folders.
QString socketPath(const QString& supportFolder, const QString& folder) {
    const QByteArray queue = QFileInfo(supportFolder).canonicalFilePath().toUtf8();
    const QByteArray hash = QCryptographicHash::hash(queue, QCryptographicHash::Sha256);
    return u"%1/open-%2.socket"_s.arg(folder, QString::fromLatin1(hash.toHex().left(16)));
}

QByteArray encoded(const Handover& handover) {
    QByteArray body = handover.activationToken.toUtf8();
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
    const QString token = parts.takeFirst();
    return {parts, token};
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
    socket.write(&accepted, 1);
    socket.flush();  // Opening what came can keep this thread busy.
    socket.disconnectFromServer();
    receive_(decoded(message.mid(lengthSize)));
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
        socket.getChar(&answer) && answer == accepted) {
        return {};
    }
    return u"the process that has the queue does not answer (%1)"_s.arg(socket.errorString());
}

}  // namespace app
