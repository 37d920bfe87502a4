#pragma once

#include "app/front_end.h"
#include "app/intake/intake_notes.h"
#include "links/recognition/url_candidates.h"
#include "platform/base/user_defaults.h"

namespace app {

/// Has the user asked before a series is taken in that is longer than the setting "Largest Series"
/// says, or refuses it where nobody is to be asked; `notes` hears of both. All outlives it but the
/// notes.
[[nodiscard]] links::SeriesGate seriesGate(Questions& questions,
                                           const platform::UserDefaults& defaults,
                                           SharedIntakeNotes notes);

}  // namespace app
