#pragma once

#include <QString>
#include <vector>

namespace engine {
class DQDownload;
}

namespace app {

class AttemptLog;
class StatusTexts;

/// One thing that is known of a download, in the user's language.
struct Fact {
    QString label;
    QString value;

    friend bool operator==(const Fact&, const Fact&) = default;
};

/// All that is known of it, what matters most first; what nobody knows is left out. While names are
/// to be hidden, addresses and places are not among it. Asks no disk. Main thread.
[[nodiscard]] std::vector<Fact> downloadFacts(engine::DQDownload& download,
                                              const StatusTexts& texts, const AttemptLog& attempts);
/// One fact a line, to be pasted elsewhere.
[[nodiscard]] QString plainText(const std::vector<Fact>& facts);

}  // namespace app
