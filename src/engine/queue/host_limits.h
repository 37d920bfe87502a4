#pragma once

#include <QHash>
#include <QString>
#include <algorithm>
#include <optional>

#include "platform/base/clock.h"

namespace engine {

/// What hosts have said about how much they serve at a time: until when they want to be left alone,
/// and how many connections they serve. Known for this run of the program and no longer. Hosts are
/// those of addresses; times are on the scale that never jumps. Main thread.
class HostLimits {
public:
    /// Nothing is known of any host.
    [[nodiscard]] bool isEmpty() const { return hosts_.isEmpty(); }

    /// It has told that it is not to be asked before `end`.
    void hold(const QString& host, platform::Seconds end);
    /// It has refused without telling a time, and is left alone until `end` or until it is known to
    /// serve.
    void pause(const QString& host, platform::Seconds end);
    /// It may be asked at once.
    void release(const QString& host);
    /// It has refused one more beside so many connections, of which it has refused none yet. What
    /// that says of how many it serves counts once it is known to serve some, if that is before it
    /// is asked again.
    void noteRefusal(const QString& host, qint64 others, platform::Seconds now);
    /// It is known to serve.
    void noteService(const QString& host, platform::Seconds now);

    /// How long it is still to be left alone; 0: it is not.
    [[nodiscard]] platform::Seconds remaining(const QString& host, platform::Seconds now) const;
    /// How many connections it serves. Nothing: it has refused none while it served others.
    [[nodiscard]] std::optional<qint64> connections(const QString& host) const;
    /// When the next host that is held may be asked again. Nothing: none is held.
    [[nodiscard]] std::optional<platform::Seconds> nextEnd(platform::Seconds now) const;

private:
    struct Limit {
        platform::Seconds heldUntil = 0;
        platform::Seconds pausedUntil = 0;
        std::optional<qint64> connections;
        std::optional<qint64> supposed;  ///< The same, should it serve at all.

        [[nodiscard]] platform::Seconds end() const { return std::max(heldUntil, pausedUntil); }
        /// Others may have been asking since it was to be asked again.
        void forgetWhatIsOver(platform::Seconds now);
    };

    QHash<QString, Limit> hosts_;
};

}  // namespace engine
