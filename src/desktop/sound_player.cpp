#include "desktop/sound_player.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "platform/base/log.h"
#include "platform/files/files.h"

namespace desktop {

using namespace Qt::Literals::StringLiterals;

namespace {

/// A player that waits for a sound server that does not answer.
constexpr int mostMilliseconds = 10'000;

QString findPlayer() {
    for (const QString& name : {u"pw-play"_s, u"paplay"_s, u"aplay"_s}) {
        if (const QString path = QStandardPaths::findExecutable(name); !path.isEmpty()) {
            return path;
        }
    }
    platform::log(u"no sounds: neither pw-play nor paplay nor aplay is installed"_s,
                  platform::LogLevel::Warning);
    return u""_s;
}

}  // namespace

SoundPlayer::SoundPlayer() {
    patience_.setSingleShot(true);
    QObject::connect(&patience_, &QTimer::timeout, &process_, &QProcess::kill);
    process_.setStandardInputFile(QProcess::nullDevice());
    process_.setStandardOutputFile(QProcess::nullDevice());
    process_.setStandardErrorFile(QProcess::nullDevice());
}

SoundPlayer::~SoundPlayer() {
    process_.kill();
    process_.waitForFinished();
}

bool SoundPlayer::play(const QString& name) {
    if (player_.isNull()) {
        player_ = findPlayer();
    }
    const QString file = fileOf(name);
    if (player_.isEmpty() || file.isEmpty()) {
        return false;
    }
    if (process_.state() == QProcess::NotRunning) {
        process_.start(player_, {file});
        patience_.start(mostMilliseconds);
    }
    return true;
}

/// Players read files, and the program's resources lie within it.
QString SoundPlayer::fileOf(const QString& name) {
    QFile resource(u":/sounds/%1.wav"_s.arg(name));
    const QString path = u"%1/%2.wav"_s.arg(platform::userCacheFolder(), name);
    if (!resource.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray sound = resource.readAll();
    if (platform::readFile(path, sound.size() + 1).data == sound) {
        return path;
    }
    QDir().mkpath(platform::userCacheFolder());
    return platform::writeFileAtomically(path, sound) ? QString() : path;
}

}  // namespace desktop
