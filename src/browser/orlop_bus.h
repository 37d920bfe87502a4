#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantList>
#include <functional>
#include <optional>

namespace browser {

/// How a call on the bus has ended. `error`: the name of the error, empty: there was none.
struct BusAnswer {
    QString error;
    QString text;
    QVariantList values;

    /// Nobody got the call, so nothing can have come of it.
    [[nodiscard]] bool reachedNobody() const;
    /// Whoever had the call was gone before it answered; what came of it is unknown.
    [[nodiscard]] bool wasCutOff() const;
};

/// The running Orlop, or the one that the bus starts for a call. Main thread.
class OrlopBus : public QObject {
    Q_OBJECT
public:
    using Answered = std::function<void(const BusAnswer&)>;

    explicit OrlopBus(QDBusConnection connection);

    /// `timeout` in milliseconds. Called back once, unless `context` is gone by then.
    void call(const QString& method, const QVariantList& arguments, int timeout, QObject* context,
              const Answered& answered);
    /// Tells by `runningChanged` from now on; starts nobody.
    void follow();

Q_SIGNALS:
    /// How many downloads run; nothing: Orlop does not run.
    void runningChanged(std::optional<quint32> count);

private Q_SLOTS:
    void propertiesChanged(const QString& interface, const QVariantMap& changed,
                           const QStringList& invalidated);

private:
    void readCount();
    void send(const QDBusMessage& message, int timeout, QObject* context, const Answered& answered);

    QDBusConnection connection_;
    bool follows_ = false;
};

}  // namespace browser
