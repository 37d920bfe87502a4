#pragma once

#include <QObject>
#include <QSocketNotifier>

#include "browser/calls.h"
#include "browser/hand_over.h"
#include "browser/native_messages.h"
#include "browser/orlop_bus.h"

namespace browser {

/// Speaks with the extension over two descriptors and with Orlop over the bus, and writes nothing
/// else anywhere. Main thread.
class Host : public QObject {
    Q_OBJECT
public:
    Host(OrlopBus& bus, int input, int output);

Q_SIGNALS:
    /// The browser has closed its end (false), or what it sends cannot be understood (true).
    void ended(bool isFailure);

private:
    void read();
    void take(const Call& call);
    void handOver(const Call& call);
    void askText(const Call& call, const QString& method, const QString& name);
    void takeBack(const Call& call);
    void subscribe(const Call& call);
    void answer(const Call& call, QVariantMap answer);
    void answerUnreachable(const Call& call, const BusAnswer& heard);
    void answerProblem(qint64 number, const QString& code, const QString& text);
    void write(const QVariantMap& message);

    OrlopBus& bus_;
    int input_, output_;
    QSocketNotifier notifier_;
    MessageCutter cutter_;
    int calls_ = 0;
    bool isSubscribed_ = false;
};

}  // namespace browser
