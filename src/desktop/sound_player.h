#pragma once

#include <QProcess>
#include <QString>
#include <QTimer>

namespace desktop {

/// Plays short sounds by one of the players that desktops bring with them (pw-play, paplay, aplay):
/// nothing else in the program needs sound, so no sound library is linked. One at a time: what
/// comes while another one plays is left out. Main thread.
class SoundPlayer {
public:
    SoundPlayer();
    ~SoundPlayer();
    SoundPlayer(const SoundPlayer&) = delete;
    SoundPlayer& operator=(const SoundPlayer&) = delete;

    /// A sound from the program's resources, by name. False: there is no player, or no such sound.
    bool play(const QString& name);

private:
    [[nodiscard]] static QString fileOf(const QString& name);

    QString player_;  ///< Null: not looked for yet; empty: there is none.
    QProcess process_;
    QTimer patience_;
};

}  // namespace desktop
