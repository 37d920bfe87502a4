#include <qt6keychain/keychain.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>
#include <QTimer>
#include <chrono>

#include "platform/base/log.h"
#include "platform/net/credential_storage.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

using std::chrono::milliseconds;

/// A store that is locked asks its user for the key to it.
constexpr std::chrono::seconds patienceWithStore(60);
/// One that answers nothing at all meanwhile is stuck, and must not stop us.
constexpr std::chrono::seconds patienceWithMute(4);
constexpr std::chrono::seconds betweenQuestions(1);
constexpr std::chrono::seconds patienceAtEnd(3);

const auto programName = u"Orlop"_s;
const auto userAttribute = u"username"_s;
const auto passwordAttribute = u"password"_s;
const auto domainAttribute = u"domain"_s;

QString serialized(const HTTPCredentials& credentials) {
    const QJsonObject object{{userAttribute, credentials.username},
                             {passwordAttribute, credentials.password},
                             {domainAttribute, credentials.accountDomain}};
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

std::optional<HTTPCredentials> deserialized(const QString& secret) {
    const QJsonObject object = QJsonDocument::fromJson(secret.toUtf8()).object();
    if (!object.contains(userAttribute) || !object.contains(passwordAttribute))
        return std::nullopt;
    return HTTPCredentials{object[userAttribute].toString(), object[passwordAttribute].toString(),
                           object[domainAttribute].toString()};
}

/// Talks to the desktop's store, on a thread of its own.
class Clerk final : public QObject {
public:
    using Done = std::function<void(const QKeychain::Job&)>;

    void start(QKeychain::Job* job, const ProtectionSpace& space, Done done) {
        if (openJobs_++ == 0)
            answered_.start();
        job->setParent(this);
        job->setAutoDelete(false);
        job->setInsecureFallback(false);
        job->setKey(secretKey(space));
        auto* const timer = new QTimer(job);
        const QDeadlineTimer deadline(patienceWithStore);
        connect(timer, &QTimer::timeout, this, [this, job, deadline] {
            if (!deadline.hasExpired() &&
                !answered_.hasExpired(milliseconds(patienceWithMute).count()))
                return askWhetherAlive();
            isStuck_ = true;
            job->emitFinishedWithError(QKeychain::OtherError, u"it does not answer"_s);
        });
        connect(job, &QKeychain::Job::finished, this, [this, timer, done = std::move(done), job] {
            if (!timer->isActive())
                return;  // It was given up before.
            timer->stop();
            end(*job, done);
        });
        timer->start(betweenQuestions);
        if (isStuck_)
            return job->emitFinishedWithError(QKeychain::OtherError,
                                              u"it has not answered before"_s);
        askWhetherAlive();
        job->start();
    }

    void endWhenIdle() {
        isEnding_ = true;
        quitIfIdle();
    }

private:
    /// Whichever of the stores is there: an answer shows that it is only the user who takes time.
    void askWhetherAlive() {
        for (const QString& store :
             {u"org.freedesktop.secrets"_s, u"org.kde.kwalletd6"_s, u"org.kde.kwalletd5"_s}) {
            auto question = QDBusMessage::createMethodCall(
                store, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
            question.setAutoStartService(false);
            auto* const answer = new QDBusPendingCallWatcher(
                QDBusConnection::sessionBus().asyncCall(question), this);
            connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
                if (!answer->isError())
                    answered_.start();
                answer->deleteLater();
            });
        }
    }

    void end(QKeychain::Job& job, const Done& done) {
        const bool isKnown =
            job.error() == QKeychain::NoError || job.error() == QKeychain::EntryNotFound;
        if (!isKnown && !std::exchange(hasComplained_, true))
            log(u"passwords are kept for this run only: %1"_s.arg(job.errorString()));
        done(job);
        --openJobs_;
        // A stuck one may be answered yet, and would not survive that.
        if (!isStuck_)
            job.deleteLater();
        quitIfIdle();
    }

    void quitIfIdle() {
        if (isEnding_ && openJobs_ == 0)
            thread()->quit();
    }

    /// Since a store last showed that it is alive, or since it was first asked.
    QElapsedTimer answered_;
    int openJobs_ = 0;
    bool isStuck_ = false;
    bool isEnding_ = false;
    bool hasComplained_ = false;
};

class SecretServiceCredentialStorage final : public CredentialStorage {
public:
    SecretServiceCredentialStorage() {
        clerk_->moveToThread(thread_.get());
        QObject::connect(thread_.get(), &QThread::finished, clerk_, &QObject::deleteLater);
        thread_->start();
    }

    ~SecretServiceCredentialStorage() override {
        QMetaObject::invokeMethod(clerk_, &Clerk::endWhenIdle, Qt::QueuedConnection);
        if (!thread_->wait(QDeadlineTimer(patienceAtEnd))) {
            thread_->quit();
            thread_->wait();
        }
    }

    void find(const ProtectionSpace& space, Found found) override {
        post([this, space, found = std::move(found)] {
            auto* const job = new QKeychain::ReadPasswordJob(programName);
            clerk_->start(job, space, [this, space, found, job](const QKeychain::Job&) {
                const auto stored = job->error() == QKeychain::NoError
                                        ? deserialized(job->textData())
                                        : std::nullopt;
                if (stored)
                    found(stored);
                else
                    memory_->find(space, found);
            });
        });
    }

    void save(const ProtectionSpace& space, const HTTPCredentials& credentials) override {
        post([this, space, credentials] {
            auto* const job = new QKeychain::WritePasswordJob(programName);
            job->setTextData(serialized(credentials));
            clerk_->start(job, space, [this, space, credentials](const QKeychain::Job& ended) {
                if (ended.error() != QKeychain::NoError)
                    memory_->save(space, credentials);
            });
        });
    }

    void remove(const ProtectionSpace& space) override {
        memory_->remove(space);
        post([this, space] {
            clerk_->start(new QKeychain::DeletePasswordJob(programName), space,
                          [](const QKeychain::Job&) {});
        });
    }

private:
    void post(std::function<void()> call) {
        QMetaObject::invokeMethod(clerk_, std::move(call), Qt::QueuedConnection);
    }

    std::unique_ptr<CredentialStorage> memory_ = makeMemoryCredentialStorage();
    std::unique_ptr<QThread> thread_ = std::make_unique<QThread>();
    Clerk* const clerk_ = new Clerk;  // Goes with its thread.
};

}  // namespace

std::unique_ptr<CredentialStorage> makeSecretServiceCredentialStorage() {
    return std::make_unique<SecretServiceCredentialStorage>();
}

}  // namespace platform
