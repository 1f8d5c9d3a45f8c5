// Cost of one SX_ wrapper call against a direct call through a function pointer to the same
// host function.
#include "scribopdk.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using ShowLayerFn = int (*)(int, uint32_t);

ShowLayerFn LoadEngine() {
  static ShowLayerFn direct = [] {
    std::string path = std::string(SCRIBO_BENCH_ENGINE) + "/Contents/MacOS/BenchEngine";
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (!handle) {
      std::fprintf(stderr, "cannot load %s: %s\n", path.c_str(), dlerror());
      std::exit(1);
    }
    if (InitializeGlobals() != 0 || SX_GetShowLayer(0, kScriboHostVersion) != 1) {
      std::fprintf(stderr, "the wrapper did not bind to the bench engine\n");
      std::exit(1);
    }
    return reinterpret_cast<ShowLayerFn>(dlsym(handle, "SX_GetShowLayer"));
  }();
  return direct;
}

void BM_WrapperCall(benchmark::State& state) {
  LoadEngine();
  short layer = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(SX_GetShowLayer(layer, kScriboHostVersion));
    layer = static_cast<short>((layer + 1) & 3);
  }
}
BENCHMARK(BM_WrapperCall);

void BM_DirectPointerCall(benchmark::State& state) {
  ShowLayerFn volatile direct = LoadEngine();
  int layer = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(direct(layer, kScriboHostVersion));
    layer = (layer + 1) & 3;
  }
}
BENCHMARK(BM_DirectPointerCall);

} // namespace

BENCHMARK_MAIN();
