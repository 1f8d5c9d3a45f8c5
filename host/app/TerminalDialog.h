// The options dialog in a terminal: the controls are listed with their item numbers, values
// and localised labels, and each line the user types becomes one dialog action
// ("type 14 3", "click 13", "toggle 17", "ok", "cancel"). End of input cancels.
#pragma once

#include <istream>
#include <ostream>

#include "DialogScript.h"

namespace scribo::host {

engine::DialogActionSource TerminalDialogSource(std::istream& in, std::ostream& out);

} // namespace scribo::host
