#pragma once

namespace app {

class Commands;

/// The commands that the core can carry out without a window, by what they are about.

/// Downloads, their order, and what happens when all are done.
void provideQueueCommands(Commands& commands);
/// How the list shows downloads.
void provideListCommands(Commands& commands);
/// Clipboard, schedule, speed, log and the end of the program.
void provideProgramCommands(Commands& commands);

}  // namespace app
