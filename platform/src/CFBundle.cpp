// Bundles: found by identifier among the images loaded in the process, created for any
// directory, and asked for exported functions of their loaded executable.
#include "BundleFiles.h"
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

__CFBundle* NewBundle(const std::string& dir) {
  auto* bundle = new __CFBundle;
  bundle->path = dir;
  std::map<std::string, std::string> values;
  scribo::ReadInfoPlist(dir, values);
  for (const auto& [key, value] : values)
    bundle->info[key] = cfstandin::MakeString(cfstandin::FromUTF8(value));
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
    std::string dir = scribo::BundleOfImage(image);
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
    std::string dir = scribo::BundleOfImage(exe);
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

std::atomic<long> gFunctionLookups{0};

} // namespace

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
