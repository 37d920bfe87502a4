#include "app/rows/rows.h"

#include "app/settings.h"
#include "engine/lifecycle/status_change.h"
#include "platform/base/user_defaults.h"

namespace app {

Rows::Rows(const Surroundings& surroundings)
    : presence_(surroundings.queue.context(), [&list = surroundings.frontEnd.list](
                                                  engine::DQDownload&) { list.setNeedsDisplay(); }),
      texts_(surroundings.queue, presence_),
      actions_({surroundings.queue.context().defaults, surroundings.workspace,
                surroundings.frontEnd, presence_, surroundings.retry}),
      vanishing_({surroundings.queue.context().loop, surroundings.queue.context().defaults,
                  surroundings.remove}),
      waits_(surroundings.queue.context().loop, surroundings.queue.admission(),
             [&list = surroundings.frontEnd.list] { list.setNeedsDisplay(); }),
      queue_(surroundings.queue),
      defaults_(surroundings.queue.context().defaults),
      openings_(surroundings.queue.context().loop) {}

bool Rows::canPerformAction(engine::DQDownload& download, unsigned index) {
    return !vanishing_.isVanishing(download) && actions_.canPerform(download, index);
}

unsigned Rows::highlightedActionButtonIndex(const engine::DQDownload& download) const {
    return pressed_ == &download ? _highlightedActionButtonIndex : 0;
}

void Rows::setHighlightedActionButtonIndex(const engine::DQDownload& download, unsigned index) {
    pressed_ = &download;
    _highlightedActionButtonIndex = index;
}

void Rows::openOriginalURLs(const engine::Downloads& downloads) {
    const double interval = defaults_.get(settings::urlOpeningInterval);
    for (std::size_t index = 0; index < downloads.size(); ++index) {
        openings_.start(interval * static_cast<double>(index), [this, download = downloads[index]] {
            actions_.openOriginalURL(*download);
        });
    }
}

void Rows::note(const engine::StatusChange& change) {
    // Its server has just had no place for it, and its row counts down from now on.
    if (change.cause == engine::StatusCause::PutOff) {
        waits_.start();
    }
    attempts_.note(change);
    noteProgress(change.download);
}

void Rows::noteProgress(const engine::DQDownload& download) {
    speeds_.note(download, queue_.context().monotonicNow());
}

void Rows::forget(const engine::DQDownload& download) {
    vanishing_.forget(download);
    presence_.forget(download);
    speeds_.forget(download);
    if (pressed_ == &download) {
        pressed_ = nullptr;
    }
}

}  // namespace app
