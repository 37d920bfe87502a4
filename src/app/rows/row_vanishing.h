#pragma once

#include <functional>
#include <memory>
#include <unordered_map>

#include "platform/base/clock.h"
#include "platform/base/timer.h"

namespace engine {
class DQDownload;
}
namespace platform {
class RunLoop;
class UserDefaults;
}  // namespace platform

namespace app {

class VanishView;

/// The steps in which finished rows fade, collapse and go. Main thread.
class RowVanishing {
public:
    struct Surroundings {
        platform::RunLoop& loop;
        const platform::UserDefaults& defaults;
        /// Takes the record out of the queue.
        std::function<void(engine::DQDownload&)> remove;
    };

    explicit RowVanishing(Surroundings surroundings);
    ~RowVanishing();
    RowVanishing(const RowVanishing&) = delete;
    RowVanishing& operator=(const RowVanishing&) = delete;

    /// Takes the row out of the view in timed steps and then the record out of the queue; at once
    /// if there is no view or animations are off.
    void vanish(engine::DQDownload& download, const std::shared_ptr<VanishView>& view,
                platform::Seconds delay);
    [[nodiscard]] bool isVanishing(const engine::DQDownload& download) const;
    void performStep(engine::DQDownload& download);
    /// How far the row has faded, from 0; -1 if it is not vanishing.
    [[nodiscard]] double fraction(const engine::DQDownload& download) const;
    /// The share of the row's height that is left; -1 if it has not begun to collapse.
    [[nodiscard]] double heightFraction(const engine::DQDownload& download) const;
    /// The record has left the queue.
    void forget(const engine::DQDownload& download) { rows_.erase(&download); }

private:
    struct Row {
        Row(platform::RunLoop& loop, std::shared_ptr<VanishView> shownIn);

        std::shared_ptr<VanishView> view;
        int countdown;
        platform::Timer timer;
    };

    void performStepAfter(engine::DQDownload& download, Row& row, platform::Seconds delay);

    Surroundings surroundings_;
    std::unordered_map<const engine::DQDownload*, Row> rows_;
};

}  // namespace app
