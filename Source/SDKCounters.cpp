// The four counters live in one object file: any plug-in that uses a frame or edit wrapper
// pulls them all in, so a bundle exports either every counter or none.
#include "SDKCounters.h"

int32_t LoadedTGFCounter = 0;
bool CanAddNoteRecordToRests = true;
int32_t ScriboEditDepth = 0;
int32_t MassEditDepth = 0;
