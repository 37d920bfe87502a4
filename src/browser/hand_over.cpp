#include "browser/hand_over.h"

#include <QDBusArgument>

namespace browser {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Kept back from Orlop's time for the way there and back.
constexpr int wayTime = 200;
constexpr int askAgainAfter = 50;
/// As long as the bus waits for a program that it starts, and then some.
constexpr int withdrawTimeout = 180'000;

Outcome outcomeOf(const QString& word, const QString& text) {
    if (word == "saved"_L1)
        return {Outcome::Kind::Ok, {}};
    if (word == "known"_L1)
        return {Outcome::Kind::Known, {}};
    return {Outcome::Kind::Refused, text};
}

}  // namespace

void withdraw(OrlopBus& bus, const QString& id, QObject* context,
              const OrlopBus::Answered& answered) {
    bus.call(u"Withdraw"_s, {id}, withdrawTimeout, context, answered);
}

HandOver::HandOver(OrlopBus& bus, QList<QVariantMap> requests, bool isMany, int patience,
                   QObject* parent)
    : QObject(parent),
      bus_(bus),
      requests_(std::move(requests)),
      isMany_(isMany),
      patience_(patience) {
    limit_.setSingleShot(true);
    limit_.setTimerType(Qt::PreciseTimer);
    connect(&limit_, &QTimer::timeout, this, [this] {
        mayExist_ = true;
        giveUp();
    });
    asked_.start();
    limit_.start(patience_);
    // Not at once: whoever made it is not listening yet.
    QTimer::singleShot(0, this, &HandOver::ask);
}

QVariantList HandOver::argumentsWithDeadline() const {
    const auto left = std::max<qint64>(patience_ - asked_.elapsed() - wayTime, 1);
    QList<QVariantMap> requests = requests_;
    for (QVariantMap& request : requests)
        request.insert(u"deadline"_s, static_cast<quint32>(left));
    return {isMany_ ? QVariant::fromValue(requests) : QVariant(requests.first())};
}

void HandOver::ask() {
    if (!hasEnded_)
        bus_.call(isMany_ ? u"HandOverAll"_s : u"HandOver"_s, argumentsWithDeadline(),
                  withdrawTimeout, this, [this](const BusAnswer& answer) { hear(answer); });
}

void HandOver::hear(const BusAnswer& answer) {
    if (hasEnded_)
        return;
    if (answer.error.isEmpty()) {
        end(readOutcomes(answer.values));
    } else if (answer.wasCutOff()) {
        mayExist_ = true;
        QTimer::singleShot(askAgainAfter, this, &HandOver::ask);
    } else if (answer.reachedNobody() && !mayExist_) {
        end(allOf({Outcome::Kind::Unreachable, {}}));
    } else if (answer.reachedNobody() || answer.error == "com.tarnworks.Orlop.Error.TooLate"_L1) {
        giveUp();
    } else {
        end(allOf({Outcome::Kind::Refused, answer.text}));
    }
}

void HandOver::giveUp() {
    if (hasEnded_)
        return;
    if (mayExist_)
        for (const QVariantMap& request : requests_)
            withdraw(bus_, request.value(u"id"_s).toString(), &bus_, [](const BusAnswer&) {});
    end(allOf({Outcome::Kind::Timeout, {}}));
}

void HandOver::end(const QList<Outcome>& outcomes) {
    hasEnded_ = true;
    limit_.stop();
    Q_EMIT ended(outcomes);
    deleteLater();
}

QList<Outcome> HandOver::allOf(const Outcome& outcome) const {
    return QList<Outcome>(requests_.size(), outcome);
}

QList<Outcome> HandOver::readOutcomes(const QVariantList& values) const {
    QList<Outcome> outcomes;
    if (!isMany_ && values.size() == 2) {
        outcomes.append(outcomeOf(values[0].toString(), values[1].toString()));
    } else if (isMany_ && values.size() == 1 && values[0].canConvert<QDBusArgument>()) {
        const auto list = values[0].value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            QString word, text;
            list.beginStructure();
            list >> word >> text;
            list.endStructure();
            outcomes.append(outcomeOf(word, text));
        }
        list.endArray();
    }
    // An answer that cannot be understood may well have made something.
    return outcomes.size() == requests_.size() ? outcomes : allOf({Outcome::Kind::Timeout, {}});
}

}  // namespace browser
