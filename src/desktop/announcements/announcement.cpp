#include "desktop/announcements/announcement.h"

#include <pwd.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>

#include "desktop/announcements/tiff.h"
#include "desktop/icon/badge.h"
#include "platform/base/log.h"

namespace desktop {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString ownIdentifier = u"com.tarnworks.Orlop"_s;
const QString formatVersion = u"1"_s;
/// Of a text from the bus, in characters; the largest icon needs far less.
constexpr qsizetype longestTransport = 16LL * 1024 * 1024;

/// So that nobody follows the programs of another user, and nobody learns the name. Empty: the
/// user has no name.
QString hashOfUser() {
    constexpr std::size_t enough = 16UL * 1024;
    char text[enough];
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, text, enough, &found) != 0 || found == nullptr) {
        return {};
    }
    const QByteArray name(found->pw_name);
    return QString::fromLatin1(QCryptographicHash::hash(name, QCryptographicHash::Sha1).toBase64());
}

QString identifierOf(const Announcement& announcement) {
    return announcement.identifier.isEmpty() ? ownIdentifier : announcement.identifier;
}

QString badgeOf(const Announcement& announcement) {
    return announcement.badge == u"0"_s ? QString() : announcement.badge;
}

QImage combined(const QImage& base, const QString& text) {
    QImage image = base.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    drawBadge(painter, image.size(), badgeImage({text}), true);
    return image;
}

ReceivedAnnouncement withCombinedImage(ReceivedAnnouncement received, const BaseIcon& baseIcon) {
    received.combinedImage = received.image;
    if (received.badge.isEmpty()) {
        return received;
    }
    const bool hasOwn = !received.image.isNull();
    const QImage base = hasOwn || !baseIcon ? received.image : baseIcon(received.identifier);
    if (base.isNull()) {
        platform::log(u"[AIH] cannot identify base icon"_s);
    } else {
        received.combinedImage = combined(base, received.badge);
    }
    return received;
}

/// Null: there is none, or it cannot be read.
QImage decodedImage(const QJsonObject& payload) {
    const QJsonValue value = payload.value(u"Image"_s);
    if (!value.isString()) {
        return {};
    }
    const auto tiff = QByteArray::fromBase64Encoding(value.toString().toLatin1(),
                                                     QByteArray::AbortOnBase64DecodingErrors);
    if (!tiff) {
        platform::log(u"[AIH] cannot decode image"_s);
        return {};
    }
    const QImage image = imageOfTiff(*tiff);
    if (image.isNull()) {
        platform::log(u"[AIH] cannot decompress image"_s);
    }
    return image;
}

std::optional<QJsonObject> payloadOf(const QString& transport) {
    if (transport.size() > longestTransport) {
        platform::log(u"[AIH] cannot decode"_s);
        return {};
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(transport.toUtf8(), &error);
    if (!document.isObject()) {
        platform::log(u"[AIH] cannot deserialize: %1"_s.arg(
            error.error == QJsonParseError::NoError ? u"no object"_s : error.errorString()));
        return {};
    }
    return document.object();
}

}  // namespace

std::optional<QString> transportString(const Announcement& announcement) {
    const QString user = hashOfUser();
    if (user.isEmpty()) {
        platform::log(u"[AIH] cannot determine user name"_s);
        return {};
    }
    QJsonObject payload{{u"Format"_s, formatVersion},
                        {u"User"_s, user},
                        {u"Identifier"_s, identifierOf(announcement)}};
    if (!announcement.image.isNull()) {
        if (const auto tiff = tiffOfImage(announcement.image)) {
            payload.insert(u"Image"_s, QString::fromLatin1(tiff->toBase64()));
        } else {
            platform::log(u"[AIH] cannot compress image"_s);
        }
    }
    if (const QString badge = badgeOf(announcement); !badge.isEmpty()) {
        payload.insert(u"Badge"_s, badge);
    }
    return QString::fromUtf8(QJsonDocument(payload).toJson(QJsonDocument::Compact));
}

std::optional<ReceivedAnnouncement> receivedAnnouncement(const QString& transport,
                                                         const BaseIcon& baseIcon) {
    const auto payload = payloadOf(transport);
    const QString user = hashOfUser();
    if (!payload || user.isEmpty() || payload->value(u"User"_s).toString() != user) {
        return {};
    }
    const QString identifier = payload->value(u"Identifier"_s).toString();
    if (identifier.isEmpty()) {
        platform::log(u"[AIH] missing bundle identifier"_s);
        return {};
    }
    const bool hasImage = payload->contains(u"Image"_s);
    const QImage image = decodedImage(*payload);
    if (hasImage && image.isNull()) {
        return {};
    }
    return withCombinedImage({identifier, image, payload->value(u"Badge"_s).toString(), {}},
                             baseIcon);
}

std::optional<ReceivedAnnouncement> composedLocally(const Announcement& announcement,
                                                    const BaseIcon& baseIcon) {
    return withCombinedImage(
        {identifierOf(announcement), announcement.image, badgeOf(announcement), {}}, baseIcon);
}

}  // namespace desktop
