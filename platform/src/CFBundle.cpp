// Bundles: found by identifier among the images loaded in the process, created for any
// directory, and asked for exported functions of their loaded executable.
#include "CFObject.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

const CFStringRef kCFBundleIdentifierKey = CFSTR("CFBundleIdentifier");
const CFStringRef kCFBundleExecutableKey = CFSTR("CFBundleExecutable");
const CFStringRef kCFBundleDevelopmentRegionKey = CFSTR("CFBundleDevelopmentRegion");
const CFStringRef kCFBundleNameKey = CFSTR("CFBundleName");
const CFStringRef kCFBundleVersionKey = CFSTR("CFBundleVersion");

__CFBundle::~__CFBundle() {
  for (auto& entry : info)
    CFRelease(entry.second);
  if (handle && !isMain)
    dlclose(handle);
}

namespace {

std::string RealPath(const std::string& path) {
  char resolved[PATH_MAX];
  return realpath(path.c_str(), resolved) ? std::string(resolved) : path;
}

bool HasInfoPlist(const fs::path& dir) {
  std::error_code ec;
  return fs::is_regular_file(dir / "Contents" / "Info.plist", ec);
}

// The nearest ancestor X.bundle (or X.app) of an image that has Contents/Info.plist.
std::string EnclosingBundle(const std::string& imagePath) {
  fs::path dir = fs::path(imagePath).parent_path();
  while (!dir.empty() && dir != dir.root_path()) {
    std::string ext = dir.extension().string();
    if ((ext == ".bundle" || ext == ".app") && HasInfoPlist(dir))
      return dir.string();
    dir = dir.parent_path();
  }
  return {};
}

__CFBundle* NewBundle(const std::string& dir) {
  auto* bundle = new __CFBundle;
  bundle->path = dir;
  cfstandin::ReadInfoPlist(dir, bundle->info);
  return bundle;
}

// Bundles handed out under the "get" rule stay alive for the rest of the process.
struct BundleCache {
  std::mutex lock;
  std::map<std::string, __CFBundle*> byPath;
};
BundleCache& Cache() {
  static auto* cache = new BundleCache;
  return *cache;
}

__CFBundle* CachedBundle(const std::string& dir) {
  BundleCache& cache = Cache();
  std::lock_guard<std::mutex> guard(cache.lock);
  auto [it, inserted] = cache.byPath.try_emplace(dir, nullptr);
  if (inserted) {
    it->second = NewBundle(dir);
    it->second->immortal = true;
  }
  return it->second;
}

int CollectImage(struct dl_phdr_info* info, size_t, void* data) {
  auto* paths = static_cast<std::vector<std::string>*>(data);
  if (info->dlpi_name && info->dlpi_name[0])
    paths->push_back(info->dlpi_name);
  return 0;
}

std::string MainExecutablePath() {
  char buffer[PATH_MAX];
  ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
  if (n <= 0)
    return {};
  buffer[n] = 0;
  return buffer;
}

} // namespace

namespace cfstandin {

std::string ExecutablePath(CFBundleRef bundle) {
  if (!bundle)
    return {};
  auto it = bundle->info.find("CFBundleExecutable");
  if (it == bundle->info.end() || Units(it->second).empty())
    return {};
  return bundle->path + "/Contents/MacOS/" + ToUTF8(it->second);
}

} // namespace cfstandin

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID) {
  if (!bundleID)
    return nullptr;
  std::vector<std::string> images;
  dl_iterate_phdr(CollectImage, &images);
  images.push_back(MainExecutablePath());
  const std::u16string& wanted = cfstandin::Units(bundleID);
  for (const std::string& image : images) {
    std::string dir = EnclosingBundle(RealPath(image));
    if (dir.empty())
      continue;
    __CFBundle* bundle = CachedBundle(dir);
    auto it = bundle->info.find("CFBundleIdentifier");
    if (it != bundle->info.end() && cfstandin::Units(it->second) == wanted)
      return bundle;
  }
  return nullptr;
}

CFBundleRef CFBundleGetMainBundle(void) {
  static __CFBundle* mainBundle = [] {
    std::string exe = MainExecutablePath();
    std::string dir = EnclosingBundle(exe);
    auto* bundle = NewBundle(dir.empty() ? fs::path(exe).parent_path().string() : dir);
    bundle->immortal = true;
    bundle->isMain = true;
    return bundle;
  }();
  return mainBundle;
}

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef bundleURL) {
  std::error_code ec;
  if (!bundleURL || !fs::is_directory(bundleURL->path, ec))
    return nullptr;
  return NewBundle(RealPath(bundleURL->path));
}

namespace {

void* LoadedHandle(CFBundleRef bundle) {
  std::lock_guard<std::mutex> guard(bundle->handleLock);
  if (!bundle->handle) {
    if (bundle->isMain) {
      bundle->handle = dlopen(nullptr, RTLD_LAZY);
    } else {
      std::string exe = cfstandin::ExecutablePath(bundle);
      if (!exe.empty())
        bundle->handle = dlopen(exe.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    }
  }
  return bundle->handle;
}

} // namespace

namespace {
std::atomic<long> gFunctionLookups{0};
}

long __CFBundleFunctionLookupCount(void) {
  return gFunctionLookups.load();
}

void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef functionName) {
  gFunctionLookups.fetch_add(1);
  if (!bundle || !functionName)
    return nullptr;
  void* handle = LoadedHandle(bundle);
  return handle ? dlsym(handle, cfstandin::ToUTF8(functionName).c_str()) : nullptr;
}

void* CFBundleGetDataPointerForName(CFBundleRef bundle, CFStringRef symbolName) {
  return CFBundleGetFunctionPointerForName(bundle, symbolName);
}

Boolean CFBundleIsExecutableLoaded(CFBundleRef bundle) {
  if (!bundle)
    return false;
  if (bundle->isMain)
    return true;
  std::string exe = cfstandin::ExecutablePath(bundle);
  if (exe.empty())
    return false;
  void* handle = dlopen(exe.c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (!handle)
    return false;
  dlclose(handle);
  return true;
}

CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
  if (!bundle || !key)
    return nullptr;
  auto it = bundle->info.find(cfstandin::ToUTF8(key));
  return it == bundle->info.end() ? nullptr : it->second;
}

CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
  return static_cast<CFStringRef>(
      CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleIdentifierKey));
}

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
  if (!bundle)
    return nullptr;
  return CFURLCreateFromFileSystemRepresentation(
      nullptr, reinterpret_cast<const UInt8*>(bundle->path.c_str()),
      static_cast<CFIndex>(bundle->path.size()), true);
}

CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle) {
  std::string exe = cfstandin::ExecutablePath(bundle);
  if (exe.empty())
    return nullptr;
  return CFURLCreateFromFileSystemRepresentation(nullptr,
                                                 reinterpret_cast<const UInt8*>(exe.c_str()),
                                                 static_cast<CFIndex>(exe.size()), false);
}
