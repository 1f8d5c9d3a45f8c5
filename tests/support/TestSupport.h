// Shared helpers for tests: where the build put the bundles, and loading a bundle's executable
// the way a host does.
#pragma once

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace scribotest {

inline std::filesystem::path BuildDir() {
  const char* dir = std::getenv("SCRIBO_BUILD_DIR");
  if (!dir)
    throw std::runtime_error("SCRIBO_BUILD_DIR is not set; run the tests through ctest");
  return dir;
}

inline std::filesystem::path SourceDir() {
  const char* dir = std::getenv("SCRIBO_SOURCE_DIR");
  if (!dir)
    throw std::runtime_error("SCRIBO_SOURCE_DIR is not set; run the tests through ctest");
  return dir;
}

// <bundle>/Contents/MacOS/<Name> for <dir>/<Name>.bundle.
inline std::filesystem::path BundleExecutable(const std::filesystem::path& bundle) {
  return bundle / "Contents" / "MacOS" / bundle.stem();
}

// dlopen of a bundle's executable; throws with the loader's message on failure.
inline void* LoadBundle(const std::filesystem::path& bundle, int flags = RTLD_NOW | RTLD_LOCAL) {
  void* handle = dlopen(BundleExecutable(bundle).c_str(), flags);
  if (!handle)
    throw std::runtime_error(std::string("cannot load bundle: ") + dlerror());
  return handle;
}

// A private copy of a built bundle under a new temporary directory. Loading the copy gives a
// fresh image with fresh statics, as if the host had just started.
inline std::filesystem::path FreshBundleCopy(const std::filesystem::path& bundle,
                                             const std::string& tag) {
  namespace fs = std::filesystem;
  fs::path dir = fs::temp_directory_path() / ("scribo-" + tag + "-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  fs::path copy = dir / bundle.filename();
  fs::remove_all(copy);
  fs::copy(bundle, copy, fs::copy_options::recursive);
  return copy;
}

template <class Fn> Fn Symbol(void* handle, const char* name) {
  return reinterpret_cast<Fn>(dlsym(handle, name));
}

} // namespace scribotest
