#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <vector>

namespace engine {
class DQDownload;
struct StatusChange;
}  // namespace engine

namespace app {

/// One thing that came of an attempt, in the user's language.
struct Attempt {
    QDateTime when;
    QString what;
};

/// Why downloads did not succeed at once, and when they were tried again. For this run of the
/// program, by address, so that a record that stands in for one that failed has it all. Main
/// thread.
class AttemptLog {
public:
    void note(const engine::StatusChange& change);
    /// The oldest first; the last twenty at most. Empty: nothing ever went wrong.
    [[nodiscard]] std::vector<Attempt> attempts(const engine::DQDownload& download) const;
    /// It is going to be fetched from another address.
    void noteNewAddress(const engine::DQDownload& download, const QString& address);

private:
    void add(const QString& address, const Attempt& attempt);

    QHash<QString, std::vector<Attempt>> attempts_;
};

}  // namespace app
