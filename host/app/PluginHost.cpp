#include "PluginHost.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstdio>

#include "HostError.h"
#include "HostTypes.h"

namespace scribo::host {

namespace fs = std::filesystem;

namespace {

// The menu record of ScriboExtensionEnumerate_UTF16: three 128-unit UTF-16 texts and a flag.
#pragma pack(push, 2)
struct MenuRecord {
  uint16_t texts[3][128];
  uint32_t flag;
};
#pragma pack(pop)
static_assert(sizeof(MenuRecord) == 772);
static_assert(offsetof(MenuRecord, texts) == 0);
static_assert(offsetof(MenuRecord, flag) == 768);

using MainFn = int (*)(int, void*);
using VersionFn = uint32_t (*)();
using InitFn = int (*)(void*, uint32_t*);
using EnumerateFn = int (*)(void*, short, MenuRecord*);
using InvokeFn = int (*)(OpaqueCocoaWindow*, short, EREGION*);

// What the host passes to `main` and as its document window: addresses of its own, never
// dereferenced by the plug-in.
int sHostContext = 1;
char sHostWindow = 0;

std::string Utf8(const uint16_t* text, size_t capacity) {
  std::string out;
  for (size_t i = 0; i < capacity && text[i]; ++i) {
    uint32_t cp = text[i];
    if (cp >= 0xD800 && cp < 0xDC00 && i + 1 < capacity && text[i + 1] >= 0xDC00 &&
        text[i + 1] < 0xE000) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (text[i + 1] - 0xDC00);
      ++i;
    }
    if (cp < 0x80) {
      out += static_cast<char>(cp);
    } else if (cp < 0x800) {
      out += static_cast<char>(0xC0 | (cp >> 6));
      out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
      out += static_cast<char>(0xE0 | (cp >> 12));
      out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (cp >> 18));
      out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (cp & 0x3F));
    }
  }
  return out;
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
  MenuRecord record{};
  if (enumerate(nullptr, 0, &record) == 0)
    throw HostError(kExitBundleError, pluginBundle_.string() + ": the plug-in offers no menu item");
  return {Utf8(record.texts[0], 128), Utf8(record.texts[1], 128), Utf8(record.texts[2], 128)};
}

int PluginHost::Invoke(EREGION region) {
  auto invoke = Require<InvokeFn>("ScriboExtensionInvoke");
  return invoke(reinterpret_cast<OpaqueCocoaWindow*>(&sHostWindow), 0, &region);
}

} // namespace scribo::host
