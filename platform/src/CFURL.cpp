// File URLs: a path and nothing more.
#include "CFObject.h"

#include <cstring>

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* buffer,
                                                 CFIndex bufLen, Boolean) {
  if (!buffer || bufLen < 0)
    return nullptr;
  auto* url = new __CFURL;
  url->path.assign(reinterpret_cast<const char*>(buffer), static_cast<size_t>(bufLen));
  // A representation may carry its terminator in the length; the path ends there.
  url->path.resize(std::strlen(url->path.c_str()));
  while (url->path.size() > 1 && url->path.back() == '/')
    url->path.pop_back();
  return url;
}
