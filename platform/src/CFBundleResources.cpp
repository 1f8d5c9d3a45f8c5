// Bundle resources and localised strings: the CoreFoundation face of the rules in BundleFiles.h.
#include "BundleFiles.h"
#include "CFObject.h"

namespace {

std::string DevelopmentRegion(CFBundleRef bundle) {
  return cfstandin::ToUTF8(static_cast<CFStringRef>(
      CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleDevelopmentRegionKey)));
}

// The path of a resource, or empty when the bundle has none of that name.
std::string FindResource(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                         CFStringRef subDir) {
  if (!bundle || CFStringGetLength(name) == 0)
    return {};
  std::string file = cfstandin::ToUTF8(subDir);
  if (!file.empty())
    file += '/';
  file += cfstandin::ToUTF8(name);
  const std::string extension = cfstandin::ToUTF8(type);
  if (!extension.empty() && extension.front() != '.')
    file += '.';
  return scribo::FindResource(bundle->path, DevelopmentRegion(bundle), file + extension);
}

} // namespace

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef resourceName,
                                 CFStringRef resourceType, CFStringRef subDirName) {
  const std::string path = FindResource(bundle, resourceName, resourceType, subDirName);
  if (path.empty())
    return nullptr;
  return CFURLCreateFromFileSystemRepresentation(nullptr,
                                                 reinterpret_cast<const UInt8*>(path.c_str()),
                                                 static_cast<CFIndex>(path.size()), false);
}

CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                        CFStringRef tableName) {
  if (key) {
    const std::string path = FindResource(
        bundle, tableName && CFStringGetLength(tableName) > 0 ? tableName : CFSTR("Localizable"),
        CFSTR("strings"), nullptr);
    std::u16string translation;
    if (!path.empty() && scribo::LookUpString(path, cfstandin::Units(key), translation))
      return cfstandin::MakeString(std::move(translation));
  }
  // Untranslated: the given value, or the key itself when there is no usable value.
  CFStringRef fallback = value && CFStringGetLength(value) > 0 ? value : key;
  return static_cast<CFStringRef>(CFRetain(fallback));
}
