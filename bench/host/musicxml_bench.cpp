// MusicXML import and export of a large generated score, and the subdivision command on it.
// Score: 20 single-staff parts x 1,000 measures of 4/4 with quarters, beamed eighths, chords,
// rests and a triplet in every fourth measure: 130,000 notes and rests, 18 MB of MusicXML.
#include <benchmark/benchmark.h>

#include <ctime>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "Commands.h"
#include "DialogActions.h"
#include "Engine.h"
#include "EngineBridge.h"
#include "MusicXmlExport.h"
#include "MusicXmlImport.h"
#include "PluginHost.h"
#include "ScoreFile.h"

using namespace scribo;

namespace {

constexpr int kParts = 20;
constexpr int kMeasures = 1000;

std::string Pitch(int step, int octave) {
  static const char* kSteps[] = {"C", "D", "E", "F", "G", "A", "B"};
  return "<pitch><step>" + std::string(kSteps[step % 7]) + "</step><octave>" +
         std::to_string(octave) + "</octave></pitch>";
}

std::string Note(int step, int duration, const char* type, const std::string& extra = "",
                 bool chord = false) {
  return std::string("<note>") + (chord ? "<chord/>" : "") + Pitch(step, 4 + step / 7) +
         "<duration>" + std::to_string(duration) + "</duration><voice>1</voice><type>" + type +
         "</type>" + extra + "</note>";
}

std::string GeneratedScore() {
  std::ostringstream xml;
  xml << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<score-partwise version=\"4.0\"><part-list>";
  for (int p = 1; p <= kParts; ++p)
    xml << "<score-part id=\"P" << p << "\"><part-name>Part " << p << "</part-name></score-part>";
  xml << "</part-list>";
  const std::string triplet = "<time-modification><actual-notes>3</actual-notes><normal-notes>2"
                              "</normal-notes></time-modification>";
  for (int p = 1; p <= kParts; ++p) {
    xml << "<part id=\"P" << p << "\">";
    for (int m = 1; m <= kMeasures; ++m) {
      xml << "<measure number=\"" << m << "\">";
      if (m == 1)
        xml << "<attributes><divisions>6</divisions><time><beats>4</beats><beat-type>4</beat-type>"
               "</time></attributes>";
      int s = (m + p) % 7;
      xml << Note(s, 6, "quarter") << Note(s + 1, 3, "eighth", "<beam number=\"1\">begin</beam>")
          << Note(s + 2, 3, "eighth", "<beam number=\"1\">end</beam>");
      if (m % 4 == 0) {
        xml << Note(s, 2, "eighth", triplet + "<notations><tuplet type=\"start\"/></notations>")
            << Note(s + 1, 2, "eighth", triplet)
            << Note(s + 2, 2, "eighth", triplet + "<notations><tuplet type=\"stop\"/></notations>");
      } else {
        xml << "<note><rest/><duration>6</duration><voice>1</voice><type>quarter</type></note>";
      }
      xml << Note(s, 12, "half") << Note(s + 2, 12, "half", "", true);
      xml << "</measure>";
    }
    xml << "</part>";
  }
  xml << "</score-partwise>\n";
  return xml.str();
}

const std::string& Score() {
  static const std::string score = GeneratedScore();
  return score;
}

// The score read from a file, imported, exported unchanged and written to a file.
void BM_ImportExport(benchmark::State& state) {
  namespace fs = std::filesystem;
  fs::path dir = fs::temp_directory_path() / ("scribo-bench-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  musicxml::WriteFileAtomically(dir / "in.musicxml", Score());
  for (auto _ : state) {
    auto imported = musicxml::ReadScoreFile(dir / "in.musicxml");
    musicxml::ApplyScore(imported.source, imported.score);
    musicxml::WriteScoreFile(imported.source, dir / "out.musicxml");
  }
  state.counters["bytes"] = static_cast<double>(fs::file_size(dir / "in.musicxml"));
  fs::remove_all(dir);
}
BENCHMARK(BM_ImportExport)->Unit(benchmark::kMillisecond)->Iterations(5);

// The whole main job on the same score without file I/O: import, into the engine, the command
// (divisions 3, so every note becomes a tuplet or three parts), back out of the engine, export.
void BM_SubdivideAll(benchmark::State& state) {
  static host::PluginHost plugin;
  static bool loaded = false;
  if (!loaded) {
    plugin.Load(host::DefaultEngineBundle(),
                host::ProgramFolder().parent_path().parent_path() / "SubdivideNotes.bundle");
    loaded = true;
  }
  engine::Engine& engine = engine::Engine::Instance();
  // Processor seconds spent in each step, over all iterations (wall time swings on a shared
  // machine; the process's own CPU time does not).
  double steps[5] = {};
  auto cpu = [] {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
  };
  auto timed = [&steps, &cpu](int step, auto&& work) {
    double start = cpu();
    work();
    steps[step] += cpu() - start;
  };
  for (auto _ : state) {
    engine.Reset();
    engine.SetAlertEcho(false);
    engine.SetProgressDisplay(engine::ProgressDisplay::Off);
    musicxml::ImportedScore imported;
    timed(0, [&] { imported = musicxml::ImportMusicXml(Score(), "generated"); });
    host::EngineBridge bridge;
    timed(1, [&] { bridge.Load(imported.score, engine.document()); });
    host::SubdivideOptions options;
    options.divisions = "3";
    engine.QueueDialogScript(host::BuildDialogScript(options));
    EREGION region{};
    region.startStaff = 1;
    region.startMeasure = 1;
    region.endStaff = kParts;
    region.endMeasure = kMeasures;
    region.endPosition = 0x7FFFFFFF;
    timed(2, [&] {
      if (plugin.Invoke(region) != 1)
        state.SkipWithError("the command changed nothing");
    });
    musicxml::Score edited;
    timed(3, [&] { edited = bridge.Read(imported.score, engine.document()); });
    timed(4, [&] {
      musicxml::ApplyScore(imported.source, edited);
      std::string text = musicxml::SerializeScore(imported.source);
      benchmark::DoNotOptimize(text.data());
    });
  }
  const char* names[5] = {"import_ms", "to_engine_ms", "invoke_ms", "from_engine_ms", "export_ms"};
  for (int i = 0; i < 5; ++i)
    state.counters[names[i]] =
        benchmark::Counter(steps[i] * 1000, benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_SubdivideAll)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace

BENCHMARK_MAIN();
