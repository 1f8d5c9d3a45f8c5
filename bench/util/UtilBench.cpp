// Run: util_bench [--with-engine]. With --with-engine the reference engine is loaded into the
// global scope first, so the keyboard queries find its providers (as in a real host process);
// without it every query looks for a provider in vain.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "KbdUtil.h"
#include "SXUtilPitch.h"
#include "SXUtilProgress.h"
#include "SXUtilRawText.h"
#include "SXUtilTranspose.h"

namespace {

void BM_ProgressUpdateNothingDue(benchmark::State& state) {
  tProgressReport report;
  SXUtilPRStart(&report, 1000);
  unsigned short done = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(SXUtilPRUpdate(&report, ++done)); // inside the first 667 ms
}
BENCHMARK(BM_ProgressUpdateNothingDue);

void BM_CancelInQueue(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(EventUtilCancelInQueue());
}
BENCHMARK(BM_CancelInQueue);

void BM_StripTextTags(benchmark::State& state) {
  std::u16string text;
  while (text.size() < static_cast<size_t>(state.range(0)))
    text += u"^font(Times,12)B^flat() Clarinet ";
  std::u16string work;
  for (auto _ : state) {
    work = text;
    SXUtilStripTextTags(reinterpret_cast<unsigned short*>(work.data()));
    benchmark::DoNotOptimize(work.data());
  }
  state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size() * 2));
}
BENCHMARK(BM_StripTextTags)->Arg(64)->Arg(4096)->Arg(262144);

void BM_ParseAndFormatPitch(benchmark::State& state) {
  SXUtilSetPitchFormatting(4);
  char text[] = "C#4";
  char out[16];
  for (auto _ : state) {
    tDiaPitch pitch;
    SXUtilParsePitch(text, &pitch);
    SXUtilFormatPitch(pitch, out, sizeof out);
    benchmark::DoNotOptimize(out);
  }
}
BENCHMARK(BM_ParseAndFormatPitch);

// Key words of 0x4000 and above would need thousands of respelling rounds one octave at a time.
void BM_StaffTransNonStandardKey(benchmark::State& state) {
  const short keySig = static_cast<short>(state.range(0));
  for (auto _ : state) {
    tInterval interval;
    SXUtilStaffTransToInterval(0x0042, keySig, &interval);
    benchmark::DoNotOptimize(interval);
  }
}
BENCHMARK(BM_StaffTransNonStandardKey)->Arg(0x0005)->Arg(0x7fff);

} // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "--with-engine") == 0) {
    const std::string engine = std::string(SCRIBO_ENGINE_BUNDLE) + "/Contents/MacOS/NotationEngine";
    if (!dlopen(engine.c_str(), RTLD_NOW | RTLD_GLOBAL)) {
      std::fprintf(stderr, "cannot load the engine: %s\n", dlerror());
      return 1;
    }
    --argc;
    ++argv;
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
