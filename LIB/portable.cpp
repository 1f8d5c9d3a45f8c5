// Localised strings of the plug-in's own bundle.
//
// Inside a host process the platform's main bundle is the host application, so the plug-in
// finds its own bundle from the image that holds its code: the directory of its executable,
// then each parent in turn, until one is a bundle (its Info.plist names an executable).
#include "portable.h"

#include "HostFunctions.h"

#include <assert_rtn.h>
#include <dlfcn.h>
#include <libgen.h>

#include <climits>
#include <cstring>
#include <string>

namespace {

// Static data of the plug-in image: its address tells dladdr which image (and file) we are.
const char sImageMarker[] = "dlbundle";

// The plug-in's bundle, found once and kept for the life of the process (never released).
CFBundleRef bundleRef = nullptr;

void GetPluginBundle() {
  Dl_info info{};
  if (dladdr(sImageMarker, &info) == 0 || !info.dli_fname)
    return;
  char path[PATH_MAX];
  std::strncpy(path, info.dli_fname, sizeof path - 1);
  path[sizeof path - 1] = 0;
  std::string dir = dirname(path);
  for (;;) {
    CFURLRef url = CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(dir.c_str()),
        static_cast<CFIndex>(dir.size()), true);
    CFBundleRef bundle = url ? CFBundleCreate(kCFAllocatorDefault, url) : nullptr;
    if (url)
      CFRelease(url);
    if (bundle && CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleExecutableKey)) {
      bundleRef = bundle;
      return;
    }
    if (bundle)
      CFRelease(bundle);
    std::strncpy(path, dir.c_str(), sizeof path - 1);
    std::string parent = dirname(path);
    // A relative path ends at ".", an absolute one at "/": no bundle encloses the image.
    if (parent == "." || parent == "/" || parent == dir)
      return;
    dir = parent;
  }
}

CFBundleRef PluginBundle() {
  if (!bundleRef)
    GetPluginBundle();
  if (!bundleRef)
    __assert_rtn("CopyPlugInStringResource", "LIB/portable", 176, "bundleRef != NULL");
  return bundleRef;
}

} // namespace

CFStringRef CopyPlugInStringResource(int id) {
  CFBundleRef bundle = PluginBundle();
  const int table = id >> 16;
  const int index = static_cast<short>(id & 0xFFFF);
  CFStringRef key =
      table != 0
          ? CFStringCreateWithFormat(kCFAllocatorDefault, nullptr, CFSTR("%d,%d"), table, index)
          : CFStringCreateWithFormat(kCFAllocatorDefault, nullptr, CFSTR("%d"), index);
  CFStringRef text = CFBundleCopyLocalizedString(bundle, key, key, nullptr);
  const bool miss = !text || !key || CFStringCompare(text, key, 0) == kCFCompareEqualTo;
  if (key)
    CFRelease(key);
  if (miss) {
    // Without any strings table every text shows as its key; say why, on every miss.
    CFURLRef table =
        CFBundleCopyResourceURL(bundle, CFSTR("Localizable"), CFSTR("strings"), nullptr);
    if (table)
      CFRelease(table);
    else
      SX_AlertMessage(nullptr, 0, 0, "Missing Localizable.strings", kScriboHostVersion);
  }
  return text;
}

unsigned short* PlugIn_GetStringResource(int id, unsigned short* dest, short destSize) {
  if (destSize <= 0)
    return nullptr;
  dest[0] = 0;
  if (CFStringRef text = CopyPlugInStringResource(id)) {
    const CFIndex length = CFStringGetLength(text);
    const CFIndex n = destSize > length ? length : destSize - 1;
    CFStringGetCharacters(text, CFRangeMake(0, n), dest);
    dest[n] = 0;
    CFRelease(text);
  }
  dest[destSize - 1] = 0;
  return dest;
}

char* PlugIn_GetStringResource(int id, char* dest, short destSize) {
  if (destSize <= 0)
    return nullptr;
  dest[0] = 0;
  Str255 local;
  local[0] = 0;
  if (CFStringRef text = CopyPlugInStringResource(id)) {
    const TextEncoding encoding = GetApplicationTextEncoding();
    if (!CFStringGetPascalString(text, local, sizeof local, encoding)) {
      // Too long for 255 bytes, or a character the encoding lacks: keep what fits, whole
      // characters only, with '?' for what cannot be written, rather than showing nothing.
      CFIndex used = 0;
      CFStringGetBytes(text, CFRangeMake(0, CFStringGetLength(text)), encoding, '?', false,
                       local + 1, 255, &used);
      local[0] = static_cast<unsigned char>(used);
    }
    CFRelease(text);
  }
  const size_t length = local[0];
  std::memmove(local, local + 1, length);
  local[length] = 0;
  std::strncpy(dest, reinterpret_cast<const char*>(local), static_cast<size_t>(destSize));
  dest[destSize - 1] = 0;
  return dest;
}

short LoadIndString(short table, short index, char* dest, short destSize) {
  const int id =
      static_cast<int>(static_cast<unsigned int>(static_cast<unsigned short>(table)) << 16 |
                       static_cast<unsigned short>(index));
  if (!PlugIn_GetStringResource(id, dest, destSize))
    return 0;
  return static_cast<short>(std::strlen(dest));
}
