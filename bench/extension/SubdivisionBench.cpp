// Splits every note of a large document with the subdivision pass: measures x 16 staves x
// 2 layers of eighth notes, into 4 (an even split) and into 3 (a triplet per note, each with its
// detail record). Reports notes and new entries per second and the entry bytes moved between the
// document and the frames (every entry loaded, every entry saved).
//
// Two families of runs: eight notes per frame on 200 and 400 measures, to check that doubling
// the document at most doubles the time, plus 10 %; and 16, 125 and 1,000 notes per frame, to
// show how the cost of a note grows with the frame it lies in. Each run is repeated and the
// check compares medians, so that one slow repetition on a busy machine does not decide it.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "Engine.h"
#include "tSubdivideParam.h"

namespace {

using namespace scribo::engine;

constexpr int kStaves = 16;
constexpr int kLayers = 2;
constexpr int kRepetitions = 5;

using RunPass = int (*)(EREGION*, const tSubdivideParam*, short);

RunPass Pass() {
  static const RunPass pass = [] {
    void* image = dlopen(SUBDIVISION_BENCH_PROBE, RTLD_NOW | RTLD_LOCAL);
    if (!image) {
      std::fprintf(stderr, "cannot load the probe: %s\n", dlerror());
      std::exit(2);
    }
    int context = 0;
    auto bundleMain = reinterpret_cast<int (*)(int, void*)>(dlsym(image, "main"));
    if (!bundleMain || bundleMain(1, &context) != 1) {
      std::fprintf(stderr, "the probe could not bind to the engine\n");
      std::exit(2);
    }
    return reinterpret_cast<RunPass>(dlsym(image, "BenchRunSubdivision"));
  }();
  return pass;
}

void BuildDocument(int measures, int notesPerFrame) {
  Engine& engine = Engine::Instance();
  engine.Reset();
  engine.SetMaxLayers(kLayers);
  Document& doc = engine.document();
  for (int s = 0; s < kStaves; ++s)
    doc.AddStaff();
  for (int m = 0; m < measures; ++m)
    doc.AddMeasure();
  EntrySpec eighth;
  eighth.duration = 512;
  eighth.notes = {{2, 0, 0}};
  for (int m = 1; m <= measures; ++m)
    for (int s = 1; s <= kStaves; ++s)
      for (int l = 0; l < kLayers; ++l)
        for (int i = 0; i < notesPerFrame; ++i)
          doc.AddEntry(FrameAddress{int16_t(s), int16_t(m), int16_t(l)}, eighth);
}

void BM_SubdivideDocument(benchmark::State& state) {
  const int measures = int(state.range(0));
  const int parts = int(state.range(1));
  const int notesPerFrame = int(state.range(2));
  const int64_t notes = int64_t(measures) * kStaves * kLayers * notesPerFrame;
  const tSubdivideParam param{1, 0x7FFFFFFF, 1024, int16_t(parts), 1, 1};
  EREGION region{};
  region.startStaff = 1;
  region.startMeasure = 1;
  region.endStaff = kStaves;
  region.endMeasure = int16_t(measures);
  region.endPosition = 0x7FFFFFFF;
  const RunPass pass = Pass();

  for (auto _ : state) {
    state.PauseTiming();
    BuildDocument(measures, notesPerFrame);
    state.ResumeTiming();
    if (pass(&region, &param, kLayers) != 1)
      state.SkipWithError("the pass saved nothing");
  }
  if (Engine::Instance().document().EntryCount() != size_t(notes * parts))
    state.SkipWithError("not every note was split");

  const int64_t entryBytes = int64_t(sizeof(EXENTRY));
  state.SetItemsProcessed(state.iterations() * notes);
  state.SetBytesProcessed(state.iterations() * notes * (1 + parts) * entryBytes);
  state.counters["new_entries"] = benchmark::Counter(double(notes * (parts - 1)),
                                                     benchmark::Counter::kIsIterationInvariantRate);
}

BENCHMARK(BM_SubdivideDocument)
    ->ArgNames({"measures", "parts", "perFrame"})
    ->Args({200, 4, 8})
    ->Args({400, 4, 8})
    ->Args({200, 3, 8})
    ->Args({400, 3, 8})
    ->Args({200, 3, 16})
    ->Args({25, 3, 125})
    ->Args({2, 3, 1000})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(0.5)
    ->Repetitions(kRepetitions)
    ->ReportAggregatesOnly(true);

// Keeps the median wall-clock and CPU time per iteration of every run for the scaling check.
class ScalingReporter : public benchmark::ConsoleReporter {
public:
  struct Times {
    double real = 0;
    double cpu = 0;
  };
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs)
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median" &&
          !run.error_occurred)
        medians[run.run_name.args] = {run.GetAdjustedRealTime(), run.GetAdjustedCPUTime()};
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, Times> medians; // in the runs' unit, milliseconds
};

} // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  ScalingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();

  // The pass runs on one thread, so its CPU time is the work done; on a shared machine the
  // wall-clock time also holds the time spent waiting for a core, and is reported beside it.
  int failures = 0;
  for (int parts : {4, 3}) {
    const std::string suffix = "/parts:" + std::to_string(parts) + "/perFrame:8";
    const auto small = reporter.medians.find("measures:200" + suffix);
    const auto large = reporter.medians.find("measures:400" + suffix);
    if (small == reporter.medians.end() || large == reporter.medians.end())
      continue; // filtered out
    const double cpuRatio = large->second.cpu / small->second.cpu;
    const bool ok = cpuRatio <= 2.2;
    std::printf("split into %d, medians of %d repetitions: CPU %.1f ms -> %.1f ms (x%.2f), wall "
                "%.1f ms -> %.1f ms (x%.2f); limit x2.20 on CPU time: %s\n",
                parts, kRepetitions, small->second.cpu, large->second.cpu, cpuRatio,
                small->second.real, large->second.real, large->second.real / small->second.real,
                ok ? "OK" : "EXCEEDED");
    failures += ok ? 0 : 1;
  }
  return failures == 0 ? 0 : 1;
}
