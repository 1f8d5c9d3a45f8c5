#include "PluginHost.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "HostError.h"
#include "HostTypes.h"
#include "TextCodec.h"
#include "tExtensionMenuRecord.h"

namespace scribo::host {

namespace fs = std::filesystem;

namespace {

using MainFn = int (*)(int, void*);
using VersionFn = uint32_t (*)();
using InitFn = int (*)(void*, uint32_t*);
using EnumerateFn = int (*)(void*, short, tExtensionMenuRecord*);
using InvokeFn = int (*)(OpaqueCocoaWindow*, short, EREGION*);

// What the host passes to `main` and as its document window: addresses of its own, never
// dereferenced by the plug-in.
int sHostContext = 1;
char sHostWindow = 0;

// One of the record's texts (at `offset`) as UTF-8, copied out of the packed record.
std::string MenuText(const tExtensionMenuRecord& record, size_t offset) {
  uint16_t units[kMenuTextUnits];
  std::memcpy(units, reinterpret_cast<const char*>(&record) + offset, sizeof units);
  units[kMenuTextUnits - 1] = 0;
  return Utf16ToUtf8(units);
}

void* OpenBundle(const fs::path& bundle, int flags, const char* what) {
  std::error_code ec;
  if (!fs::is_directory(bundle, ec))
    throw HostError(kExitBundleError, "cannot load the " + std::string(what) + " bundle " +
                                          bundle.string() + ": no such bundle");
  fs::path executable = BundleExecutable(bundle);
  if (!fs::is_regular_file(executable, ec))
    throw HostError(kExitBundleError, "cannot load the " + std::string(what) + " bundle " +
                                          bundle.string() + ": it has no executable " +
                                          executable.string());
  void* handle = dlopen(executable.c_str(), flags);
  if (!handle)
    throw HostError(kExitBundleError, "cannot load the " + std::string(what) + " bundle " +
                                          bundle.string() + ": " + dlerror());
  return handle;
}

} // namespace

fs::path BundleExecutable(const fs::path& bundle) {
  fs::path clean = bundle;
  if (!clean.has_filename())
    clean = clean.parent_path();
  return clean / "Contents" / "MacOS" / clean.stem();
}

fs::path ProgramFolder() {
  char buffer[PATH_MAX];
  ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
  if (n <= 0)
    return fs::current_path();
  buffer[n] = '\0';
  return fs::path(buffer).parent_path();
}

PluginHost::~PluginHost() {
  // The bundles stay loaded until the process ends, as in a host: the plug-in's statics and
  // the engine's document must outlive every call into them.
}

template <class Fn> Fn PluginHost::Require(const char* name) {
  dlerror();
  void* symbol = dlsym(plugin_, name);
  if (!symbol)
    throw HostError(kExitBundleError,
                    pluginBundle_.string() + " is not a plug-in: it exports no " + name);
  return reinterpret_cast<Fn>(symbol);
}

void PluginHost::Load(const fs::path& engineBundle, const fs::path& pluginBundle) {
  pluginBundle_ = pluginBundle;
  // The engine is loaded globally and first: the plug-in's `main` looks for it by bundle
  // identifier among the loaded images.
  engine_ = OpenBundle(engineBundle, RTLD_NOW | RTLD_GLOBAL, "engine");
  if (!dlsym(engine_, "SX_LoadTGF"))
    throw HostError(kExitBundleError,
                    engineBundle.string() + " is not a notation engine: it exports no SX_LoadTGF");
  plugin_ = OpenBundle(pluginBundle, RTLD_NOW | RTLD_LOCAL, "plug-in");

  auto main = Require<MainFn>("main");
  auto version = Require<VersionFn>("ScriboExtensionVersion");
  auto init = Require<InitFn>("ScriboExtensionInit");
  Require<EnumerateFn>("ScriboExtensionEnumerate_UTF16");
  Require<InvokeFn>("ScriboExtensionInvoke");

  if (main(1, &sHostContext) == 0)
    throw HostError(kExitBundleError, pluginBundle.string() +
                                          ": the plug-in's main failed (it found no host engine)");
  uint32_t v = version();
  if (v != kScriboHostVersion) {
    char text[96];
    std::snprintf(text, sizeof text, ": the plug-in is built for host version 0x%08X, not 0x%08X",
                  v, kScriboHostVersion);
    throw HostError(kExitBundleError, pluginBundle.string() + text);
  }
  uint32_t initFlag = 0xFFFFFFFF;
  if (init(nullptr, &initFlag) == 0)
    throw HostError(kExitBundleError, pluginBundle.string() + ": the plug-in failed to initialise");
}

MenuTexts PluginHost::Menu() {
  auto enumerate = Require<EnumerateFn>("ScriboExtensionEnumerate_UTF16");
  tExtensionMenuRecord record{};
  if (enumerate(nullptr, 0, &record) == 0)
    throw HostError(kExitBundleError, pluginBundle_.string() + ": the plug-in offers no menu item");
  return {MenuText(record, offsetof(tExtensionMenuRecord, text1)),
          MenuText(record, offsetof(tExtensionMenuRecord, text2)),
          MenuText(record, offsetof(tExtensionMenuRecord, text3))};
}

int PluginHost::Invoke(EREGION region) {
  auto invoke = Require<InvokeFn>("ScriboExtensionInvoke");
  return invoke(reinterpret_cast<OpaqueCocoaWindow*>(&sHostWindow), 0, &region);
}

} // namespace scribo::host
