// Loading and driving a plug-in bundle the way the host application does: the engine bundle
// first (so that the plug-in's `main` finds it among the loaded images), then the plug-in;
// `main` with non-zero arguments, the version check, initialisation, the menu texts, and the
// invocation with a selection region. Every step that fails is a HostError with
// kExitBundleError and a message naming the bundle and the step.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "EREGION.h"

namespace scribo::host {

// The three menu texts of ScriboExtensionEnumerate_UTF16, as UTF-8.
struct MenuTexts {
  std::string first;
  std::string second;
  std::string third;
};

class PluginHost {
public:
  PluginHost() = default;
  ~PluginHost();
  PluginHost(const PluginHost&) = delete;
  PluginHost& operator=(const PluginHost&) = delete;

  // Loads both bundles and runs main, the version check and initialisation.
  void Load(const std::filesystem::path& engineBundle, const std::filesystem::path& pluginBundle);

  MenuTexts Menu();

  // ScriboExtensionInvoke for menu item 0: 1 when the command changed the document.
  int Invoke(EREGION region);

private:
  template <class Fn> Fn Require(const char* name);

  std::filesystem::path pluginBundle_;
  void* engine_ = nullptr;
  void* plugin_ = nullptr;
};

// <bundle>/Contents/MacOS/<Name> for <dir>/<Name>.bundle.
std::filesystem::path BundleExecutable(const std::filesystem::path& bundle);

// The folder of the running program, where the build puts the bundles beside it.
std::filesystem::path ProgramFolder();

} // namespace scribo::host
