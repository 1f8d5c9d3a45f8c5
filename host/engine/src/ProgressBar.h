// The mass-edit progress display: one line on standard error, redrawn in place, drawn only
// when standard error is a terminal.
#pragma once

#include "EngineState.h"

namespace scribo::engine {

void DrawProgress(const EngineState& state, MassEdit& edit);
void EraseProgress(const EngineState& state, MassEdit& edit);

} // namespace scribo::engine
