#pragma once

#include <QDBusUnixFileDescriptor>
#include <QObject>

QT_FORWARD_DECLARE_CLASS(QDBusConnection)

namespace platform {

/// One lock of the login manager, which holds as long as we keep the descriptor it gives us.
class Login1Inhibitor final : public QObject {
    Q_OBJECT

public:
    struct Terms {
        QString what, why;
        /// "delay" or "block".
        QString mode;
    };

    explicit Login1Inhibitor(Terms terms) : terms_(std::move(terms)) {}

    /// Asks for it; nothing happens if it is there or asked for.
    void take(const QDBusConnection& bus);
    void release();

Q_SIGNALS:
    void refused(const QString& reason);

private:
    const Terms terms_;
    QDBusUnixFileDescriptor lock_;
    bool isWanted_ = false;
};

}  // namespace platform
