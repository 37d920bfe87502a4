#include "app/schedule/automation.h"

namespace app {

Automation::Automation(const Surroundings& surroundings)
    : toggles_({surroundings.queue, surroundings.defaults, surroundings.frontEnd.questions,
                surroundings.allDone, surroundings.updateStatus, surroundings.vanish}),
      schedule_({surroundings.queue, surroundings.frontEnd.list, surroundings.defaults,
                 surroundings.loop}) {}

}  // namespace app
