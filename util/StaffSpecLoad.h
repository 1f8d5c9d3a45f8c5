// Internal to the utilities: the staff-spec load that the derived queries share.
#pragma once

#include "EDTDocumentSpecs.h"

// Clears `spec` (the host reads bytes 102 to 113 of the buffer it is given, so they must not
// hold stale data) and loads the staff spec; the host's result.
short LoadClearedStaffSpec(short staff, EDTStaffSpec2014* spec);
