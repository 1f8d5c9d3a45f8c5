#include "Commands.h"

#include <dlfcn.h>
#include <unistd.h>

#include <iostream>

#include "BundleFiles.h"
#include "DialogItems.h"
#include "Engine.h"
#include "EngineBridge.h"
#include "HostError.h"
#include "HostExports.h"
#include "MusicXmlExport.h"
#include "PluginHost.h"
#include "ScoreError.h"
#include "ScoreFile.h"
#include "SelectionRange.h"
#include "TerminalDialog.h"

namespace scribo::host {

namespace fs = std::filesystem;
using musicxml::Score;

namespace {

// Scores with at least this many frames show the engine's progress bar while they move in and
// out of the engine.
constexpr long kProgressThreshold = 20000;

// The engine's mass-edit display, driven by the host around its own long steps through the
// engine's host functions.
class HostProgress {
public:
  HostProgress(int total, bool enabled) {
    if (enabled)
      handle_ = SX_StartMassEdit(nullptr, static_cast<uint32_t>(total), kScriboHostVersion);
  }
  ~HostProgress() {
    if (handle_)
      SX_EndMassEdit(handle_, 0, kScriboHostVersion);
  }
  HostProgress(const HostProgress&) = delete;
  HostProgress& operator=(const HostProgress&) = delete;

  MeasureProgress Callback() {
    return [this](int done, int) {
      if (handle_ && done > reported_) {
        SX_MassEditProgress(handle_, done - reported_, 0, 0, 0, kScriboHostVersion);
        reported_ = done;
      }
    };
  }

private:
  void* handle_ = nullptr;
  int reported_ = 0;
};

NumberRange RangeOption(const std::optional<std::string>& text, const char* option, int count,
                        const char* what) {
  if (!text)
    return {1, count};
  auto range = ParseRange(*text);
  if (!range)
    throw HostError(kExitUsage, std::string(option) + " " + *text +
                                    ": give a range such as 2-5 (or a single number)");
  if (range->last > count)
    throw HostError(kExitScoreError, std::string(option) + " " + *text + ": the score has " +
                                         std::to_string(count) + " " + what);
  return *range;
}

// Refuses an output that would replace the input, or that cannot be written, before the work.
void CheckOutput(const SubdivideRequest& request) {
  std::error_code ec;
  fs::path output = request.inPlace ? request.input : request.output;
  if (!request.inPlace && fs::exists(output, ec) && fs::equivalent(output, request.input, ec))
    throw HostError(kExitUsage, "the output " + output.string() +
                                    " is the input; pass --in-place to overwrite it");
  if (fs::is_directory(output, ec))
    throw HostError(kExitScoreError, "cannot write " + output.string() + ": it is a folder");
  fs::path folder = output.parent_path().empty() ? fs::path(".") : output.parent_path();
  if (!fs::is_directory(folder, ec))
    throw HostError(kExitScoreError, "cannot write " + output.string() + ": the folder " +
                                         folder.string() + " does not exist");
  if (access(folder.c_str(), W_OK) != 0)
    throw HostError(kExitScoreError, "cannot write " + output.string() + ": the folder " +
                                         folder.string() + " is not writable");
}

} // namespace

bool DialogAccepted(const engine::Engine& engine) {
  const auto& history = engine.DialogHistory();
  if (history.empty())
    return false;
  const auto& record = history.back();
  if (record.end != engine::DialogEnd::ByHandler)
    return false;
  for (auto it = record.messages.rbegin(); it != record.messages.rend(); ++it)
    if (it->message == kDialogMessageAction)
      return it->item == dialog_items::kOK;
  return false;
}

fs::path DefaultEngineBundle() {
  // The bundle of the engine image this program runs with.
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&engine::Engine::Instance), &info) && info.dli_fname)
    if (std::string bundle = BundleOfImage(info.dli_fname); !bundle.empty())
      return bundle;
  return ProgramFolder() / "NotationEngine.bundle";
}

fs::path DefaultPluginBundle() {
  return ProgramFolder() / "SubdivideNotes.bundle";
}

int RunSubdivide(const SubdivideRequest& request, std::ostream& err) {
  CheckOutput(request);
  musicxml::ImportedScore imported = musicxml::ReadScoreFile(request.input);
  for (const auto& notice : imported.source.notices)
    err << "scribo-host: " << notice << "\n";
  Score& score = imported.score;
  NumberRange measures = RangeOption(request.measures, "--measures",
                                     static_cast<int>(score.measures.size()), "measures");
  NumberRange staves =
      RangeOption(request.staves, "--staves", static_cast<int>(score.staves.size()), "staves");

  PluginHost host;
  host.Load(DefaultEngineBundle(), request.plugin.empty() ? DefaultPluginBundle() : request.plugin);

  engine::Engine& engine = engine::Engine::Instance();
  engine.Reset();
  engine.SetAlertEcho(false);
  engine.SetProgressDisplay(request.quiet ? engine::ProgressDisplay::Off
                                          : engine::ProgressDisplay::Terminal);
  long frames = static_cast<long>(score.frames.size());
  bool showProgress = !request.quiet && frames >= kProgressThreshold;
  EngineBridge bridge;
  {
    HostProgress progress(static_cast<int>(score.measures.size()), showProgress);
    bridge.Load(score, engine.document(), progress.Callback());
  }

  EREGION region = MeasureRegion(measures, staves);
  engine.SetSelection(region);

  if (request.interactive)
    engine.SetInteractiveDialogs(TerminalDialogSource(std::cin, err));
  else
    engine.QueueDialogScript(BuildDialogScript(request.options));

  int changed = host.Invoke(region);

  bool rejected = false;
  for (const auto& alert : engine.Alerts()) {
    err << alert.resolved << "\n";
    rejected = rejected || alert.kind == kAlertRejected;
  }
  if (!changed) {
    if (!DialogAccepted(engine)) {
      throw HostError(kExitRejected, rejected
                                         ? "the plug-in rejected the options; nothing was written"
                                         : "the options dialog was cancelled; nothing was written");
    }
    if (!request.quiet)
      err << "scribo-host: nothing in the selection was subdivided\n";
  }

  Score edited;
  {
    HostProgress progress(static_cast<int>(score.measures.size()), showProgress);
    edited = bridge.Read(score, engine.document(), progress.Callback());
  }
  musicxml::ExportSummary summary = musicxml::ApplyScore(imported.source, edited);
  fs::path output = request.inPlace ? request.input : request.output;
  musicxml::WriteScoreFile(imported.source, output);
  if (!request.quiet) {
    err << "scribo-host: " << summary.splitEntries << " entries subdivided in "
        << summary.changedMeasures << " measures; wrote " << output.string() << "\n";
    if (summary.inexactNotes > 0)
      err << "scribo-host: " << summary.inexactNotes
          << " notes have durations no note value shows exactly (a run without a tuplet "
             "record); their type is the next shorter value and their time is exact\n";
  }
  return kExitOk;
}

int RunInfo(const fs::path& input, std::ostream& out, std::ostream& err) {
  musicxml::ImportedScore imported = musicxml::ReadScoreFile(input);
  for (const auto& notice : imported.source.notices)
    err << "scribo-host: " << notice << "\n";
  engine::Engine& engine = engine::Engine::Instance();
  engine.Reset();
  EngineBridge bridge;
  bridge.Load(imported.score, engine.document());
  Score score = bridge.Read(imported.score, engine.document());
  out << input.string() << "\n";
  out << "staves: " << score.staves.size() << ", measures: " << score.measures.size() << "\n";
  for (size_t s = 0; s < score.staves.size(); ++s) {
    const auto& staff = score.staves[s];
    out << "staff " << s + 1 << ": " << staff.name;
    if (staff.stavesInPart > 1)
      out << " (" << staff.staffInPart << " of " << staff.stavesInPart << ")";
    out << "\n";
    for (int l = 0; l < musicxml::kLayerCount; ++l) {
      long notes = 0, rests = 0, tuplets = 0;
      for (size_t m = 0; m < score.measures.size(); ++m)
        for (const auto& e : score.At(static_cast<int>(s), static_cast<int>(m), l).entries) {
          (e.isNote ? notes : rests) += 1;
          tuplets += static_cast<long>(e.tuplets.size());
        }
      if (notes + rests == 0)
        continue;
      out << "  layer " << l + 1 << ": " << notes + rests << " entries (" << notes << " notes, "
          << rests << " rests), " << tuplets << " tuplets\n";
    }
  }
  for (size_t s = 0; s < score.staves.size(); ++s)
    for (size_t m = 0; m < score.measures.size(); ++m)
      for (int l = 0; l < musicxml::kLayerCount; ++l)
        for (const auto& e : score.At(static_cast<int>(s), static_cast<int>(m), l).entries) {
          for (const auto& t : e.tuplets)
            out << "tuplet: staff " << s + 1 << ", measure " << score.measures[m].number
                << ", layer " << l + 1 << ", position " << e.position << ": " << t.tupletNumber
                << " x " << t.tupletUnit << " in the time of " << t.referenceNumber << " x "
                << t.referenceUnit << " TDU\n";
        }
  return kExitOk;
}

int RunMenu(const fs::path& plugin, std::ostream& out) {
  PluginHost host;
  host.Load(DefaultEngineBundle(), plugin.empty() ? DefaultPluginBundle() : plugin);
  MenuTexts texts = host.Menu();
  out << texts.first << "\n" << texts.second << "\n" << texts.third << "\n";
  return kExitOk;
}

} // namespace scribo::host
