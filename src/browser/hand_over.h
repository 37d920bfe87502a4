#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QTimer>
#include <QVariantMap>

#include "browser/orlop_bus.h"

namespace browser {

/// What became of one download that was handed over.
struct Outcome {
    enum class Kind {
        Ok,           ///< Orlop has it, and has saved it
        Known,        ///< Orlop has had it before, under the same id
        Refused,      ///< nothing was made; `text` says why
        Timeout,      ///< no answer in time; what was made, if anything, is being withdrawn
        Unreachable,  ///< there is nobody to ask; nothing was made
    };
    Kind kind = Kind::Timeout;
    /// In the user's language, from Orlop; else empty.
    QString text;
};

/// One attempt to hand downloads over, within its time. If Orlop goes while it is asked, it is
/// asked again, since equal ids make nothing new. What is not answered in time is withdrawn before
/// `ended` says so, hence a browser may go on with its download then. Deletes itself. Main thread.
class HandOver : public QObject {
    Q_OBJECT
public:
    /// `patience` in milliseconds.
    HandOver(OrlopBus& bus, QList<QVariantMap> requests, bool isMany, int patience,
             QObject* parent);

Q_SIGNALS:
    /// Once; one outcome for each request, in their order.
    void ended(const QList<Outcome>& outcomes);

private:
    void ask();
    void hear(const BusAnswer& answer);
    void giveUp();
    void end(const QList<Outcome>& outcomes);
    [[nodiscard]] QList<Outcome> allOf(const Outcome& outcome) const;
    [[nodiscard]] QList<Outcome> readOutcomes(const QVariantList& values) const;
    [[nodiscard]] QVariantList argumentsWithDeadline() const;

    OrlopBus& bus_;
    QList<QVariantMap> requests_;
    bool isMany_;
    /// An attempt before may have made something.
    bool mayExist_ = false;
    bool hasEnded_ = false;
    int patience_;
    QElapsedTimer asked_;
    QTimer limit_;
};

/// Takes a hand-over back that was not answered in time, as `Withdraw` on the bus does.
void withdraw(OrlopBus& bus, const QString& id, QObject* context,
              const OrlopBus::Answered& answered);

}  // namespace browser
