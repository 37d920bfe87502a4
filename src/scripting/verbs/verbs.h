#pragma once

#include "app/terminal/terminal_output.h"
#include "scripting/verbs/verb_words.h"

namespace scripting {

/// Asks it of the program that runs on the session bus, and waits for the answer. The exit status:
/// see `verbUsage`. Needs a QCoreApplication.
[[nodiscard]] int performVerb(const VerbWords& words, app::terminal::Output& output,
                              app::terminal::Output& errors, app::terminal::Glyphs glyphs);

}  // namespace scripting
