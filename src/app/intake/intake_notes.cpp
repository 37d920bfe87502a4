#include "app/intake/intake_notes.h"

namespace app {

namespace {

constexpr std::size_t mostRefusedTexts = 1000;
constexpr qsizetype mostProblems = 1000;

}  // namespace

void IntakeNotes::noteRefused(const QString& text) {
    if (refused_.size() < mostRefusedTexts) {
        refused_.push_back(refusedText(text));
    }
}

void IntakeNotes::noteKnown(const engine::DownloadPtr& download) {
    if (isKnown_.insert(download.get()).second) {
        known_.push_back(download);
    }
}

void IntakeNotes::noteProblem(const QString& text) {
    if (problems_.size() < mostProblems) {
        problems_.append(text);
    }
}

}  // namespace app
