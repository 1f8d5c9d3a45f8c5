// A plug-in's dialogs in a terminal. The dialog is listed once, its controls grouped under
// their headings with their item numbers, values and localised labels; each line the user types
// is one action ("13" clicks item 13, "14 3" types 3 into field 14, "ok", "cancel"; "help"
// lists them), and after it only the controls that changed are shown again. An alert stays on
// screen until the next action. End of input presses Cancel.
//
// The same commands, given beforehand as a script (lines or ";"-separated), drive dialogs
// without showing them: scribo-host run --actions.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <string_view>

#include "DialogScript.h"

namespace scribo::host {

// Checks a script of commands before anything runs: "" when every command is well formed, else
// a message naming the first one that is not.
std::string CheckDialogCommands(std::string_view script);

// Actions read from `in`, one per line, with the dialog shown on `out`.
engine::DialogActionSource TerminalDialogSource(std::istream& in, std::ostream& out);

// Actions from a checked script, played silently across the dialogs the plug-in opens; a
// command that does not fit the dialog is reported on `err` and skipped.
engine::DialogActionSource ScriptedDialogSource(std::string_view script, std::ostream& err);

// `first` played into the first dialog, then whatever `then` gives.
engine::DialogActionSource StartingWith(engine::DialogScript first,
                                        engine::DialogActionSource then);

} // namespace scribo::host
