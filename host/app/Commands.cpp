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

bool IsStandardStream(const fs::path& path) {
  return path == "-";
}

std::string OutputName(const fs::path& output) {
  return IsStandardStream(output) ? "standard output" : output.string();
}

musicxml::ImportedScore ReadInput(const fs::path& input, std::ostream& err) {
  musicxml::ImportedScore imported =
      musicxml::ReadScoreFile(IsStandardStream(input) ? fs::path("/dev/stdin") : input);
  for (const auto& notice : imported.source.notices)
    err << "scribo-host: " << notice << "\n";
  return imported;
}

void WriteOutput(const musicxml::MusicXmlSource& source, const fs::path& output) {
  if (!IsStandardStream(output)) {
    musicxml::WriteScoreFile(source, output);
    return;
  }
  std::string text = musicxml::SerializeScore(source);
  std::cout.write(text.data(), static_cast<std::streamsize>(text.size())).flush();
  if (!std::cout)
    throw musicxml::ScoreError("cannot write the score to standard output");
}

// Refuses an output that would replace the input, or that cannot be written, before the work.
void CheckOutput(const fs::path& input, const fs::path& output, bool inPlace) {
  if (IsStandardStream(output))
    return;
  std::error_code ec;
  if (!inPlace && fs::exists(output, ec) && fs::equivalent(output, input, ec))
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

EREGION Selection(const Score& score, const InvokeRequest& request) {
  int measureCount = static_cast<int>(score.measures.size());
  int staffCount = static_cast<int>(score.staves.size());
  NumberRange measures{1, measureCount};
  if (request.measures)
    measures = MeasureRange(score, *request.measures, "--measures");
  NumberRange staves{1, staffCount};
  if (request.staves) {
    auto range = ParseRange(*request.staves);
    if (!range)
      throw HostError(kExitUsage, "--staves " + *request.staves +
                                      ": give a range such as 2-5 (or a single number)");
    if (range->last > staffCount)
      throw HostError(kExitScoreError, "--staves " + *request.staves + ": the score has " +
                                           Counted(staffCount, "staff", "staves"));
    staves = *range;
  }
  return MeasureRegion(measures, staves);
}

std::optional<engine::DialogAction> NoMoreActions(const engine::DialogView&) {
  return std::nullopt;
}

// One invocation of a plug-in's menu command on a score's selection.
struct Invocation {
  int result = 0;      // what ScriboExtensionInvoke returned
  std::string command; // the menu item's text
  Score edited;        // the engine's document read back
  musicxml::ExportSummary summary;
};

// Loads the engine and the plug-in, moves the score into the engine, invokes the command with
// the dialogs answered by `dialogs`, prints the alerts the user has not seen yet, and applies
// the document the command left to the score's source tree.
Invocation InvokeOnScore(const InvokeRequest& request, musicxml::ImportedScore& imported,
                         engine::DialogActionSource dialogs, bool quiet, std::ostream& err) {
  Score& score = imported.score;
  EREGION region = Selection(score, request);
  PluginHost host;
  host.Load(DefaultEngineBundle(), request.plugin.empty() ? DefaultPluginBundle() : request.plugin);
  Invocation run;
  run.command = host.Menu().first;

  engine::Engine& engine = engine::Engine::Instance();
  engine.Reset();
  engine.SetAlertEcho(false);
  engine.SetProgressDisplay(quiet ? engine::ProgressDisplay::Off
                                  : engine::ProgressDisplay::Terminal);
  bool showProgress = !quiet && static_cast<long>(score.frames.size()) >= kProgressThreshold;
  EngineBridge bridge;
  {
    HostProgress progress(static_cast<int>(score.measures.size()), showProgress);
    bridge.Load(score, engine.document(), progress.Callback());
  }
  engine.SetSelection(region);
  engine.SetInteractiveDialogs(std::move(dialogs));

  run.result = host.Invoke(region);

  for (const auto& alert : engine.Alerts())
    if (!request.interactive || alert.dialog == 0) // a dialog in the terminal showed its own
      err << alert.resolved << "\n";
  {
    HostProgress progress(static_cast<int>(score.measures.size()), showProgress);
    run.edited = bridge.Read(score, engine.document(), progress.Callback());
  }
  run.summary = musicxml::ApplyScore(imported.source, run.edited);
  return run;
}

enum class DialogOutcome { Accepted, Rejected, Cancelled };

// How the last dialog ended: accepted with OK, OK pressed last and refused by the plug-in, or
// cancelled (also when OK was refused and the user then pressed Cancel).
DialogOutcome LastDialogOutcome(const engine::Engine& engine) {
  const auto& history = engine.DialogHistory();
  if (history.empty())
    return DialogOutcome::Cancelled;
  const auto& record = history.back();
  std::vector<long> pressed;
  for (const auto& message : record.messages)
    if (message.message == kDialogMessageAction)
      pressed.push_back(message.item);
  if (record.end != engine::DialogEnd::ByHandler && !pressed.empty())
    pressed.pop_back(); // the host's own Cancel when the actions ran out
  if (pressed.empty() || pressed.back() != dialog_items::kOK)
    return DialogOutcome::Cancelled;
  return record.end == engine::DialogEnd::ByHandler ? DialogOutcome::Accepted
                                                    : DialogOutcome::Rejected;
}

struct SplitCounts {
  long entries = 0;  // entries split into runs
  long measures = 0; // measures holding one, counted once whatever the staves
  long tied = 0;     // split entries whose first part keeps a tie to the next part
};

// A split entry keeps its source and is followed by the new entries of its run.
SplitCounts CountSplits(const Score& edited) {
  SplitCounts counts;
  for (size_t m = 0; m < edited.measures.size(); ++m) {
    long before = counts.entries;
    for (size_t s = 0; s < edited.staves.size(); ++s)
      for (int l = 0; l < musicxml::kLayerCount; ++l) {
        const auto& entries = edited.At(static_cast<int>(s), static_cast<int>(m), l).entries;
        for (size_t i = 0; i + 1 < entries.size(); ++i) {
          if (entries[i].source < 0 || entries[i + 1].source >= 0)
            continue;
          ++counts.entries;
          for (const auto& pitch : entries[i].pitches)
            if (pitch.tieStart) {
              ++counts.tied;
              break;
            }
        }
      }
    counts.measures += counts.entries > before ? 1 : 0;
  }
  return counts;
}

// "0 (position 1), 1-7 (positions 2-8), 7a (position 9)": each measure's printed number and its
// place in the score, runs of consecutive numbers together.
std::string MeasureList(const Score& score) {
  auto numeric = [](const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos &&
           text.size() < 9;
  };
  std::string list;
  int count = static_cast<int>(score.measures.size());
  for (int first = 0; first < count;) {
    int last = first;
    while (last + 1 < count && numeric(MeasureNumber(score, last)) &&
           numeric(MeasureNumber(score, last + 1)) &&
           std::stoi(MeasureNumber(score, last + 1)) == std::stoi(MeasureNumber(score, last)) + 1)
      ++last;
    list += list.empty() ? "" : ", ";
    if (first == last)
      list += MeasureNumber(score, first) + " (position " + std::to_string(first + 1) + ")";
    else
      list += MeasureNumber(score, first) + "-" + MeasureNumber(score, last) + " (positions " +
              std::to_string(first + 1) + "-" + std::to_string(last + 1) + ")";
    first = last + 1;
  }
  return list;
}

} // namespace

bool DialogAccepted(const engine::Engine& engine) {
  return LastDialogOutcome(engine) == DialogOutcome::Accepted;
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
  fs::path output = request.inPlace ? request.input : request.output;
  CheckOutput(request.input, output, request.inPlace);
  musicxml::ImportedScore imported = ReadInput(request.input, err);

  engine::DialogActionSource dialogs =
      request.interactive
          ? StartingWith(OptionActions(request.options), TerminalDialogSource(std::cin, err))
          : StartingWith(BuildDialogScript(request.options), NoMoreActions);
  Invocation run = InvokeOnScore(request, imported, std::move(dialogs), request.quiet, err);
  if (!run.result) {
    DialogOutcome outcome = LastDialogOutcome(engine::Engine::Instance());
    if (outcome == DialogOutcome::Rejected)
      throw HostError(kExitRejected, "the plug-in rejected the options; nothing was written");
    if (outcome == DialogOutcome::Cancelled)
      throw HostError(kExitRejected, "the options dialog was cancelled; nothing was written");
  }

  WriteOutput(imported.source, output);
  if (request.quiet)
    return kExitOk;
  SplitCounts counts = CountSplits(run.edited);
  if (counts.entries == 0)
    err << "scribo-host: nothing in the selection was subdivided";
  else
    err << "scribo-host: " << Counted(counts.entries, "entry", "entries") << " subdivided in "
        << Counted(counts.measures, "measure", "measures");
  err << "; wrote " << OutputName(output) << "\n";
  if (counts.tied > 0)
    err << "scribo-host: "
        << (counts.tied == 1 ? "1 tied note was split: its first part stays tied"
                             : std::to_string(counts.tied) +
                                   " tied notes were split: their first part stays tied")
        << "\n";
  if (run.summary.inexactNotes > 0)
    err << "scribo-host: " << run.summary.inexactNotes
        << " notes have durations no note value shows exactly (a run without a tuplet "
           "record); their type is the next shorter value and their time is exact\n";
  return kExitOk;
}

int RunPlugin(const RunRequest& request, std::ostream& err) {
  if (!request.output.empty())
    CheckOutput(request.input, request.output, false);
  musicxml::ImportedScore imported = ReadInput(request.input, err);
  engine::DialogActionSource dialogs = NoMoreActions;
  if (request.interactive)
    dialogs = TerminalDialogSource(std::cin, err);
  else if (request.actions)
    dialogs = ScriptedDialogSource(*request.actions, err);

  std::string before = musicxml::SerializeScore(imported.source);
  Invocation run = InvokeOnScore(request, imported, std::move(dialogs), false, err);
  bool changed = musicxml::SerializeScore(imported.source) != before;

  if (changed && !request.output.empty())
    WriteOutput(imported.source, request.output);
  err << "scribo-host: \"" << run.command << "\" returned " << run.result << " and ";
  if (!changed)
    err << "left the score unchanged; nothing written\n";
  else if (request.output.empty())
    err << "changed the score; give -o OUTPUT to write it\n";
  else
    err << "changed the score; wrote " << OutputName(request.output) << "\n";
  return kExitOk;
}

int RunInfo(const fs::path& input, std::ostream& out, std::ostream& err) {
  musicxml::ImportedScore imported = ReadInput(input, err);
  engine::Engine& engine = engine::Engine::Instance();
  engine.Reset();
  EngineBridge bridge;
  bridge.Load(imported.score, engine.document());
  Score score = bridge.Read(imported.score, engine.document());
  long entries = 0;
  for (const auto& frame : score.frames)
    entries += static_cast<long>(frame.entries.size());
  out << (IsStandardStream(input) ? "standard input" : input.string()) << "\n";
  out << Counted(static_cast<long>(score.staves.size()), "staff", "staves") << ", "
      << Counted(entries, "entry", "entries") << " in "
      << Counted(static_cast<long>(score.measures.size()), "measure", "measures") << "\n";
  out << "measures: " << MeasureList(score) << "\n";
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
      out << "  layer " << l + 1 << ": " << Counted(notes + rests, "entry", "entries") << " ("
          << Counted(notes, "note", "notes") << ", " << Counted(rests, "rest", "rests") << "), "
          << Counted(tuplets, "tuplet", "tuplets") << "\n";
    }
  }
  for (size_t s = 0; s < score.staves.size(); ++s)
    for (size_t m = 0; m < score.measures.size(); ++m)
      for (int l = 0; l < musicxml::kLayerCount; ++l)
        for (const auto& e : score.At(static_cast<int>(s), static_cast<int>(m), l).entries) {
          for (const auto& t : e.tuplets)
            out << "tuplet: staff " << s + 1 << ", measure " << MeasureNumber(score, int(m))
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
