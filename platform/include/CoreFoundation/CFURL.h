// CoreFoundation stand-in: file URLs. Only file-system paths are represented. Thread: any.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

// A URL for a path (`bufLen` bytes, or up to a 0 byte within them). The stand-in's URLs only
// carry a path to the calls that take one, so `isDirectory` changes nothing.
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef alloc, const UInt8* buffer,
                                                 CFIndex bufLen, Boolean isDirectory);

CF_EXTERN_C_END
