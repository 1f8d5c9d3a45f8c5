// A probe plug-in loaded the way a host loads a plug-in: a bundle built like one, whose table
// hands a host-side test the SDK functions to call inside it.
#pragma once

#include <string>

#include "TestSupport.h"

namespace scribotest {

template <class Table> struct ProbeBundle {
  void* image;
  const Table* table;
  int (*main)(int token, void* context); // the bundle's exported `main`

  // Data the bundle exports by name, such as the SDK's counters.
  template <class T> T& Exported(const char* name) const { return *Symbol<T*>(image, name); }
};

template <class Table>
ProbeBundle<Table> LoadProbe(const std::filesystem::path& bundle, const char* tableFunction) {
  void* image = LoadBundle(bundle);
  auto table = Symbol<const Table* (*)()>(image, tableFunction);
  auto main = Symbol<int (*)(int, void*)>(image, "main");
  if (!table || !main)
    throw std::runtime_error("not a probe bundle: " + bundle.string());
  return {image, table(), main};
}

} // namespace scribotest
