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

/// Why downloads did not succeed at once, and when they were tried again: by address, so that a
/// record that stands in for one that failed has it all. The last of them are kept with the record
/// over a restart, in the words of the language that they were noted in. Main thread.
class AttemptLog {
public:
    void note(const engine::StatusChange& change);
    /// The oldest first; the last twenty at most. Empty: nothing ever went wrong.
    [[nodiscard]] std::vector<Attempt> attempts(const engine::DQDownload& download) const;
    /// It is going to be fetched from another address.
    void noteNewAddress(engine::DQDownload& download, const QString& address);

private:
    void add(engine::DQDownload& download, const QString& address, const QString& what);

    QHash<QString, std::vector<Attempt>> attempts_;
};

}  // namespace app
