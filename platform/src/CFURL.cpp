#include "CFObject.h"

#include <cstring>

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* buffer,
                                                 CFIndex bufLen, Boolean isDirectory) {
  if (!buffer || bufLen < 0)
    return nullptr;
  auto* url = new __CFURL;
  url->path.assign(reinterpret_cast<const char*>(buffer), static_cast<size_t>(bufLen));
  // A representation may carry its terminator in the length; the path ends there.
  url->path.resize(std::strlen(url->path.c_str()));
  while (url->path.size() > 1 && url->path.back() == '/')
    url->path.pop_back();
  url->isDirectory = isDirectory != 0;
  return url;
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean, UInt8* buffer, CFIndex maxBufLen) {
  if (!url || !buffer || maxBufLen < 1 || url->path.size() + 1 > static_cast<size_t>(maxBufLen))
    return false;
  std::memcpy(buffer, url->path.c_str(), url->path.size() + 1);
  return true;
}

Boolean CFURLHasDirectoryPath(CFURLRef url) {
  return url && url->isDirectory;
}
