#pragma once

#include <QImage>
#include <QString>
#include <functional>
#include <optional>

/// What programs tell each other of their icons (resources/dbus/com.tarnworks.AIH.xml): one JSON
/// object with texts alone. Any thread.
namespace desktop {

struct Announcement {
    /// Of the program whose icon it is; empty: the one that announces.
    QString identifier = {};
    /// Null: the plain icon.
    QImage image = {};
    /// Empty, or "0", which is the same: none.
    QString badge = {};
};

/// The text that goes over the bus. Nothing: it cannot be made, which the log tells.
[[nodiscard]] std::optional<QString> transportString(const Announcement& announcement);

struct ReceivedAnnouncement {
    QString identifier;
    QImage image;
    QString badge;
    /// The image with its badge, or of a bare badge the program's own icon with it.
    QImage combinedImage;
};

/// How the icon of a program looks that did not send one. Null: unknown.
using BaseIcon = std::function<QImage(const QString& identifier)>;

/// What a text from the bus says, whoever sent it. Nothing: it is of another user or cannot be
/// read, which the log tells. The texts are bounded, and so are the pictures in them.
[[nodiscard]] std::optional<ReceivedAnnouncement> receivedAnnouncement(const QString& transport,
                                                                       const BaseIcon& baseIcon);
/// The same of an announcement that never was on a bus.
[[nodiscard]] std::optional<ReceivedAnnouncement> composedLocally(const Announcement& announcement,
                                                                  const BaseIcon& baseIcon);

}  // namespace desktop
