#include "app/schedule/automation.h"

namespace app {

Automation::Automation(const Surroundings& surroundings)
    : commands_(surroundings.list, surroundings.frontEnd.list, surroundings.frontEnd.questions),
      toggles_({surroundings.defaults, surroundings.frontEnd.questions, surroundings.allDone,
                surroundings.updateStatus, surroundings.vanish}),
      schedule_({surroundings.queue, commands_, surroundings.defaults, surroundings.loop}) {}

}  // namespace app
