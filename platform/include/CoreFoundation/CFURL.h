// CoreFoundation stand-in: file URLs. Only file-system paths are represented. Thread: any.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef alloc, const UInt8* buffer,
                                                 CFIndex bufLen, Boolean isDirectory);
// Writes the zero-terminated path; false when it does not fit.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex maxBufLen);
Boolean CFURLHasDirectoryPath(CFURLRef url);

CF_EXTERN_C_END
