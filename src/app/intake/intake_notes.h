#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <unordered_set>
#include <vector>

#include "app/intake/refused_text.h"
#include "app/queue/download_order.h"

namespace app {

/// What an intake comes upon beside new addresses, to be told at its end. Main thread.
class IntakeNotes {
public:
    /// Only the first thousand are kept: more nobody corrects.
    void noteRefused(const QString& text);
    void noteKnown(const engine::DownloadPtr& download);
    /// A sentence on something that was not opened.
    void noteProblem(const QString& text);

    /// What comes may be more than the memory holds.
    void noteLargeSeries() { holdsLargeSeries_ = true; }

    [[nodiscard]] bool holdsLargeSeries() const { return holdsLargeSeries_; }
    [[nodiscard]] const std::vector<RefusedText>& refused() const { return refused_; }
    /// The downloads of the queue whose addresses came once more, each once.
    [[nodiscard]] const Downloads& known() const { return known_; }
    [[nodiscard]] const QStringList& problems() const { return problems_; }

private:
    std::vector<RefusedText> refused_;
    Downloads known_;
    std::unordered_set<const engine::DQDownload*> isKnown_;
    QStringList problems_;
    bool holdsLargeSeries_ = false;
};

using SharedIntakeNotes = std::shared_ptr<IntakeNotes>;

}  // namespace app
