// Loads, splits and saves 100,000 entries the way the subdivision command does: every note of
// every frame gets one new slot after it (SX_InsertEXENTRY), the slot is filled with a copy at
// half the duration, and the frame is saved and freed. Reports entries per second for frames of
// a few lengths (longer frames move longer tails on each insertion).
#include <benchmark/benchmark.h>

#include <cstdint>

#include "Engine.h"
#include "HostExports.h"

namespace {

using namespace scribo::engine;

constexpr int kEntries = 100000;
constexpr int kStaves = 10;

// kEntries entries of `perFrame` each, spread over kStaves staves.
void BuildScore(int perFrame) {
  Engine& engine = Engine::Instance();
  engine.Reset();
  Document& doc = engine.document();
  int frames = kEntries / perFrame;
  int measures = (frames + kStaves - 1) / kStaves;
  for (int s = 0; s < kStaves; ++s)
    doc.AddStaff();
  for (int m = 0; m < measures; ++m)
    doc.AddMeasure();
  EntrySpec note;
  note.duration = 256;
  note.notes = {{2, 0, 0}};
  for (int f = 0; f < frames; ++f) {
    FrameAddress at{int16_t(f % kStaves + 1), int16_t(f / kStaves + 1), 0};
    for (int i = 0; i < perFrame; ++i)
      doc.AddEntry(at, note);
  }
}

void SplitAll(int perFrame) {
  int frames = kEntries / perFrame;
  for (int f = 0; f < frames; ++f) {
    EXTGF2005a* frame = SX_LoadTGF(0, f % kStaves + 1, f / kStaves + 1, 0, 1, kScriboHostVersion);
    for (int i = 0; i < frame->entryCount; i += 2) {
      if (!SX_InsertEXENTRY(frame, i + 1, 1, kScriboHostVersion))
        break;
      EXENTRY* entries = frame->entries;
      entries[i].duration = int16_t(entries[i].duration / 2);
      entries[i].actualDuration /= 2;
      entries[i + 1] = entries[i];
      entries[i + 1].entryNumber = 0;
      entries[i + 1].position = entries[i].position + entries[i].actualDuration;
    }
    SX_SaveTGF(frame, kScriboHostVersion);
    SX_FreeTGF(frame, kScriboHostVersion);
  }
}

void BM_LoadSplitSave(benchmark::State& state) {
  int perFrame = int(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    BuildScore(perFrame);
    state.ResumeTiming();
    SplitAll(perFrame);
  }
  if (Engine::Instance().document().EntryCount() != size_t(2 * kEntries))
    state.SkipWithError("the split did not double the entries");
  state.SetItemsProcessed(int64_t(state.iterations()) * kEntries);
  state.counters["entries/s"] =
      benchmark::Counter(double(kEntries), benchmark::Counter::kIsIterationInvariantRate);
}

BENCHMARK(BM_LoadSplitSave)->Arg(16)->Arg(125)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
