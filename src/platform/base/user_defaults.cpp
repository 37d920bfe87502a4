#include "platform/base/user_defaults.h"

#include <QAbstractEventDispatcher>
#include <QHash>
#include <QSet>
#include <QSocketNotifier>
#include <atomic>
#include <cstdlib>
#include <map>
#include <memory>
#include <thread>
#include <vector>

#include "platform/base/defaults_file.h"
#include "platform/base/log.h"
#include "platform/base/timer.h"
#include "platform/base/values.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// The kernel takes some fifteen milliseconds to let go of a folder that it was to watch, for which
/// the end of a program that has little to do would wait.
constexpr int looksBeforeNotices = 10;
constexpr Seconds timeBetweenLooks = 0.1;

}  // namespace

class UserDefaults::Private {
public:
    Private(QString folder, const QString& domain, RunLoop* loop)
        : folder_(std::move(folder)), loop_(loop), file_(folder_, domain) {
        if (loop_ != nullptr)
            later_.emplace(*loop_);
        static_cast<void>(reload());
        if (later_)
            later_->watching.start(0, [this] { watch(); });
    }

    ~Private() { synchronize(); }

    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    [[nodiscard]] QVariant valueInForce(const QString& key);
    [[nodiscard]] const QVariantMap& stored() {
        refresh();
        return stored_;
    }
    void store(const QString& key, const QVariant& value);
    void setArguments(QVariantMap arguments);
    void registerDefaults(const QVariantMap& values);

    Observation observe(Observer observer);

    bool synchronize();
    UserDefaults& suite(const QString& name);

private:
    struct Later {
        explicit Later(RunLoop& loop) : watching(loop), announcing(loop), writing(loop) {}
        Timer watching, announcing, writing;
    };

    [[nodiscard]] QVariant lookUp(const QString& key) const;
    /// Makes `change`, and tells the observers of those of `keys` whose value in force it changed.
    template <typename Change>
    void changeLayers(const QSet<QString>& keys, Change change);
    void announce(const QString& key);
    void announceSoon(const QString& key);

    /// Where no value changes while another thread reads it, none is half read.
    void assertThread() const { Q_ASSERT(std::this_thread::get_id() == thread_); }
    void writeSoon();
    void watch();
    void refresh();
    void reloadIfNoticed();
    [[nodiscard]] bool reload();
    void adopt(QVariantMap values);

    const QString folder_;
    RunLoop* const loop_;
    const std::thread::id thread_ = std::this_thread::get_id();
    DefaultsFile file_;
    QVariantMap arguments_, stored_, registered_;
    /// What these three say together, of the keys that were asked for since they last changed.
    QHash<QString, QVariant> inForce_;
    /// Changes that are not in the file yet. Invalid: the key is to go.
    QVariantMap unwritten_;
    bool mustRewrite_ = false;
    bool isWriting_ = false;
    bool hasComplained_ = false;
    std::vector<std::weak_ptr<const Observer>> observers_;
    QSet<QString> unannounced_;
    std::optional<Later> later_;  ///< None without a run loop.
    std::map<QString, std::unique_ptr<UserDefaults>> suites_;
    int looks_ = 0;  ///< Taken by itself since the loop runs.
    std::unique_ptr<QSocketNotifier> notifier_;
};

QVariant UserDefaults::Private::lookUp(const QString& key) const {
    for (const QVariantMap* layer : {&arguments_, &stored_, &registered_}) {
        const auto value = layer->constFind(key);
        if (value != layer->constEnd())
            return *value;
    }
    return {};
}

QVariant UserDefaults::Private::valueInForce(const QString& key) {
    assertThread();
    refresh();
    const auto known = inForce_.constFind(key);
    return known != inForce_.cend() ? *known : *inForce_.insert(key, lookUp(key));
}

template <typename Change>
void UserDefaults::Private::changeLayers(const QSet<QString>& keys, Change change) {
    QVariantMap before;
    for (const QString& key : keys)
        before.insert(key, lookUp(key));
    change();
    inForce_.clear();
    for (auto old = before.cbegin(); old != before.cend(); ++old) {
        if (old.value() != lookUp(old.key()))
            announceSoon(old.key());
    }
}

/// Reading a value may find that the file has changed, and whoever reads does not expect observers
/// to run meanwhile.
void UserDefaults::Private::announceSoon(const QString& key) {
    if (!later_) {
        announce(key);
        return;
    }
    if (unannounced_.isEmpty()) {
        later_->announcing.start(0, [this] {
            for (const QString& changed : std::exchange(unannounced_, {}))
                announce(changed);
        });
    }
    unannounced_.insert(key);
}

Observation UserDefaults::Private::observe(Observer observer) {
    std::erase_if(observers_, [](const auto& known) { return known.expired(); });
    const auto shared = std::make_shared<const Observer>(std::move(observer));
    observers_.push_back(shared);
    return Observation(shared);
}

/// Over a copy: an observer may begin other observations, or end its own while it runs.
void UserDefaults::Private::announce(const QString& key) {
    const auto observers = observers_;
    for (const std::weak_ptr<const Observer>& known : observers) {
        if (const auto observer = known.lock())
            (*observer)(key);
    }
}

void UserDefaults::Private::store(const QString& key, const QVariant& value) {
    assertThread();
    const QVariant plain = value.isValid() ? propertyListValue(value) : QVariant();
    if (value.isValid() && !plain.isValid()) {
        log(u"cannot store a %1 as \"%2\""_s.arg(QLatin1StringView(value.typeName()), key),
            LogLevel::Error);
        return;
    }
    refresh();
    if (stored_.value(key) == plain && stored_.value(key).typeId() == plain.typeId())
        return;
    changeLayers({key}, [&] {
        if (plain.isValid())
            stored_.insert(key, plain);
        else
            stored_.remove(key);
    });
    unwritten_.insert(key, plain);
    if (!later_)
        synchronize();
    else
        writeSoon();
}

void UserDefaults::Private::writeSoon() {
    constexpr Seconds writeDelay = 0.5;
    later_->writing.startUnlessActive(writeDelay, [this] { synchronize(); });
}

void UserDefaults::Private::setArguments(QVariantMap arguments) {
    const QStringList keys = arguments_.keys() + arguments.keys();
    changeLayers({keys.begin(), keys.end()}, [&] { arguments_ = std::move(arguments); });
}

void UserDefaults::Private::registerDefaults(const QVariantMap& values) {
    const QStringList keys = values.keys();
    changeLayers({keys.begin(), keys.end()}, [&] { registered_.insert(values); });
}

void UserDefaults::Private::watch() {
    if (QAbstractEventDispatcher::instance() == nullptr)
        return;
    if (looks_ < looksBeforeNotices) {
        ++looks_;
        reloadIfNoticed();
        later_->watching.start(timeBetweenLooks, [this] { watch(); });
        return;
    }
    const int notice = file_.startNotice();
    if (notice < 0) {
        looks_ = 0;  // Each reading looks again.
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(notice, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { reloadIfNoticed(); });
    // What was written before the notices began brings none.
    static_cast<void>(reload());
}

/// Where the run loop hears of changes nothing is asked of the system here: settings are read
/// hundreds of times for each download.
void UserDefaults::Private::refresh() {
    if (looks_ == 0 && std::this_thread::get_id() == thread_)
        reloadIfNoticed();
}

void UserDefaults::Private::reloadIfNoticed() {
    if (file_.mayHaveChanged())
        static_cast<void>(reload());
}

/// False: what is stored cannot be read, and so must not be written over.
bool UserDefaults::Private::reload() {
    DefaultsFile::Reading reading = file_.readIfChanged();
    switch (reading.state) {
        case DefaultsFile::State::Unchanged:
            break;
        case DefaultsFile::State::Read:
            adopt(std::move(reading.values));
            break;
        case DefaultsFile::State::Damaged:
            // What is in memory is all that is left.
            mustRewrite_ = !stored_.isEmpty();
            if (mustRewrite_ && later_)
                writeSoon();
            break;
        case DefaultsFile::State::Unreadable:
            return false;
    }
    return true;
}

void UserDefaults::Private::adopt(QVariantMap values) {
    for (auto change = unwritten_.cbegin(); change != unwritten_.cend(); ++change) {
        if (change.value().isValid())
            values.insert(change.key(), change.value());
        else
            values.remove(change.key());
    }
    const QStringList keys = stored_.keys() + values.keys();
    changeLayers({keys.begin(), keys.end()}, [&] { stored_ = std::move(values); });
}

bool UserDefaults::Private::synchronize() {
    if (later_)
        later_->writing.cancel();
    // An observer that hears of what is read here may store more, which is written with the rest.
    if (isWriting_ || (unwritten_.isEmpty() && !mustRewrite_))
        return true;
    isWriting_ = true;
    const Descriptor lock = file_.lock();
    const bool mayWrite = reload();
    const std::optional<Error> error = mayWrite ? file_.write(stored_) : std::nullopt;
    isWriting_ = false;
    if (!mayWrite)
        return false;
    if (!error) {
        unwritten_.clear();
        mustRewrite_ = hasComplained_ = false;
        return true;
    }
    if (!std::exchange(hasComplained_, true))
        log(u"cannot write \"%1\": %2"_s.arg(file_.path(), error->text), LogLevel::Error);
    return false;
}

UserDefaults& UserDefaults::Private::suite(const QString& name) {
    std::unique_ptr<UserDefaults>& found = suites_[name];
    if (!found)
        found = std::make_unique<UserDefaults>(folder_, name, loop_);
    return *found;
}

UserDefaults::UserDefaults(QString folder, const QString& domain, RunLoop* loop)
    : private_(std::make_unique<Private>(std::move(folder), domain, loop)) {}

UserDefaults::~UserDefaults() = default;

void UserDefaults::setArguments(QVariantMap arguments) {
    private_->setArguments(std::move(arguments));
}

void UserDefaults::registerDefaults(const QVariantMap& values) {
    private_->registerDefaults(values);
}

QVariant UserDefaults::objectForKey(const QString& key) const {
    return private_->valueInForce(key);
}

bool UserDefaults::boolForKey(const QString& key) const {
    return boolValue(objectForKey(key));
}

qint64 UserDefaults::integerForKey(const QString& key) const {
    return integerValue(objectForKey(key));
}

double UserDefaults::doubleForKey(const QString& key) const {
    return doubleValue(objectForKey(key));
}

QString UserDefaults::stringForKey(const QString& key) const {
    return stringValue(objectForKey(key));
}

QVariantList UserDefaults::arrayForKey(const QString& key) const {
    return listValue(objectForKey(key));
}

QStringList UserDefaults::stringArrayForKey(const QString& key) const {
    return stringListValue(objectForKey(key));
}

QVariantMap UserDefaults::dictionaryForKey(const QString& key) const {
    return mapValue(objectForKey(key));
}

bool UserDefaults::hasValueForKey(const QString& key) const {
    return objectForKey(key).isValid();
}

void UserDefaults::setObject(const QString& key, const QVariant& value) {
    private_->store(key, value);
}

void UserDefaults::removeObject(const QString& key) {
    private_->store(key, {});
}

QVariantMap UserDefaults::storedValues() const {
    return private_->stored();
}

void UserDefaults::archiveObject(const QString& key, const QVariant& value) {
    const QByteArray data = archivedData(value);
    setObject(key, data.isEmpty() ? QVariant() : data);
}

QVariant UserDefaults::unarchivedObjectForKey(const QString& key) const {
    return valueFromArchivedData(objectForKey(key).toByteArray());
}

void UserDefaults::setFolderPath(const QString& key, const QString& path) {
    setObject(key, abbreviateWithTilde(path));
}

QString UserDefaults::folderPathForKey(const QString& key, const QString& defaultPath) const {
    const QString path = stringForKey(key);
    return expandTilde(path.isEmpty() ? defaultPath : path);
}

UserDefaults& UserDefaults::suite(const QString& name) {
    return private_->suite(name);
}

Observation UserDefaults::observe(Observer observer) {
    return private_->observe(std::move(observer));
}

bool UserDefaults::synchronize() {
    return private_->synchronize();
}

template <>
bool UserDefaults::get(const Setting<bool>& setting) const {
    const QVariant value = objectForKey(setting.name());
    return value.isValid() ? boolValue(value) : setting.fallback();
}

template <>
qint64 UserDefaults::get(const Setting<qint64>& setting) const {
    const QVariant value = objectForKey(setting.name());
    return setting.limits().applied(value.isValid() ? integerValue(value) : setting.fallback());
}

template <>
double UserDefaults::get(const Setting<double>& setting) const {
    const QVariant value = objectForKey(setting.name());
    return setting.limits().applied(value.isValid() ? doubleValue(value) : setting.fallback());
}

template <>
QString UserDefaults::get(const Setting<QString>& setting) const {
    const QVariant value = objectForKey(setting.name());
    return value.isValid() ? stringValue(value) : setting.fallback();
}

template <>
QVariantMap UserDefaults::get(const Setting<QVariantMap>& setting) const {
    return dictionaryForKey(setting.name());
}

namespace {

std::atomic<UserDefaults*>& installedDefaults() {
    static std::atomic<UserDefaults*> defaults = nullptr;
    return defaults;
}

}  // namespace

UserDefaults& standardDefaults() {
    UserDefaults* const defaults = installedDefaults();
    if (defaults == nullptr)
        std::abort();  // A program without defaults is wired wrongly.
    return *defaults;
}

void installStandardDefaults(UserDefaults* defaults) {
    installedDefaults() = defaults;
}

}  // namespace platform
