#include "ScoreSession.h"

#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "Commands.h"
#include "Engine.h"
#include "ScoreError.h"
#include "ScoreFile.h"
#include "SelectionRange.h"
#include "WebJson.h"

namespace scribo::web {

namespace fs = std::filesystem;

namespace {

int CountTuplets(const musicxml::Score& score) {
  int count = 0;
  for (const auto& frame : score.frames)
    for (const auto& entry : frame.entries)
      count += static_cast<int>(entry.tuplets.size());
  return count;
}

// The language the environment asks for ("de" of "de_DE.UTF-8"), "" when none.
std::string EnvironmentLanguage() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value && *value) {
      std::string language(value);
      return language.substr(0, language.find_first_of("_.@"));
    }
  }
  return {};
}

// A folder of its own under the system's temporary folder, removed with the object.
class TemporaryFolder {
public:
  TemporaryFolder() {
    std::string pattern = (fs::temp_directory_path() / "scribo-web-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
      throw musicxml::ScoreError("cannot make a temporary folder in " +
                                 fs::temp_directory_path().string());
    path_ = pattern;
  }
  ~TemporaryFolder() {
    std::error_code ec;
    fs::remove_all(path_, ec);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const fs::path& path() const { return path_; }

private:
  fs::path path_;
};

// The engine as the page's commands expect it: an empty document, no dialogs or alerts left
// over, nothing echoed on the terminal.
engine::Engine& FreshEngine() {
  engine::Engine& engine = engine::Engine::Instance();
  engine.Reset();
  engine.SetAlertEcho(false);
  engine.SetProgressDisplay(engine::ProgressDisplay::Off);
  return engine;
}

} // namespace

void ScoreSession::LoadBundles(const fs::path& engine, const fs::path& plugin) {
  host_.Load(engine, plugin);
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(plugin / "Contents" / "Resources", ec))
    if (entry.is_directory() && entry.path().extension() == ".lproj" &&
        entry.path().stem() != "Base")
      languages_.push_back(entry.path().stem().string());
  std::sort(languages_.begin(), languages_.end());
  std::string wanted = EnvironmentLanguage();
  if (std::find(languages_.begin(), languages_.end(), wanted) == languages_.end())
    wanted = std::find(languages_.begin(), languages_.end(), "en") != languages_.end()
                 ? "en"
                 : (languages_.empty() ? "" : languages_.front());
  if (!wanted.empty())
    SetLanguage(wanted);
}

void ScoreSession::SetLanguage(const std::string& language) {
  // The plug-in and the engine look up their strings in the language of LC_ALL first.
  setenv("LC_ALL", language.c_str(), 1);
  language_ = language;
}

void ScoreSession::Open(const fs::path& file, const std::string& name) {
  musicxml::ImportedScore imported = musicxml::ReadScoreFile(file);
  auto text = std::make_shared<const std::string>(musicxml::SerializeScore(imported.source));
  Archive previous =
      std::exchange(archive_, {imported.source.fromArchive, imported.source.archivePath,
                               imported.source.archiveMembers});
  try {
    Show(std::move(imported));
  } catch (const std::runtime_error& e) {
    // The engine refused the score: the document shown before comes back.
    archive_ = std::move(previous);
    if (!steps_.empty())
      ShowStep(step_);
    throw musicxml::ScoreError(name + ": " + e.what());
  }
  name_ = name;
  steps_ = {std::move(text)};
  step_ = 0;
}

void ScoreSession::OpenBytes(const std::string& bytes, const std::string& name) {
  TemporaryFolder folder;
  fs::path file = folder.path() / (musicxml::IsCompressedName(name) ? "upload.mxl" : "upload.xml");
  musicxml::WriteFileAtomically(file, bytes);
  try {
    Open(file, name);
  } catch (const musicxml::ScoreError& e) {
    std::string message = e.what();
    for (size_t at; (at = message.find(file.string())) != std::string::npos;)
      message.replace(at, file.string().size(), name);
    throw musicxml::ScoreError(message);
  }
}

void ScoreSession::Show(musicxml::ImportedScore imported) {
  current_ = std::move(imported);
  current_.source.fromArchive = archive_.used;
  current_.source.archivePath = archive_.scorePath;
  current_.source.archiveMembers = archive_.members;
  bridge_.Load(current_.score, FreshEngine().document());
  ++revision_;
}

void ScoreSession::ShowStep(size_t step) {
  step_ = step;
  Show(musicxml::ImportMusicXml(*steps_[step_], name_));
}

bool ScoreSession::Undo() {
  if (!CanUndo())
    return false;
  ShowStep(step_ - 1);
  return true;
}

bool ScoreSession::Redo() {
  if (!CanRedo())
    return false;
  ShowStep(step_ + 1);
  return true;
}

CommandOutcome ScoreSession::Run(const Selection& selection, double screenWidth,
                                 double screenHeight, DialogChannel& channel) {
  engine::Engine& engine = engine::Engine::Instance();
  engine.ClearAlerts();
  engine::ScreenRect screen{0, 0, screenWidth, screenHeight};
  engine.windows().SetMainScreen(screen);
  EREGION region = host::MeasureRegion({selection.firstMeasure, selection.lastMeasure},
                                       {selection.firstStaff, selection.lastStaff});
  engine.SetSelection(region);

  // Each state shown carries the alerts raised since the one before; whatever is raised after
  // the dialog closes goes with the outcome.
  size_t alertsShown = 0;
  engine.SetInteractiveDialogs(channel.Source([&](const engine::DialogView& view) {
    Json state = DialogJson(view, screen);
    Json alerts = Json::array();
    for (; alertsShown < engine.Alerts().size(); ++alertsShown)
      alerts.push_back(AlertJson(engine.Alerts()[alertsShown]));
    state["alerts"] = std::move(alerts);
    return state;
  }));
  int changed = host_.Invoke(region);
  engine.SetInteractiveDialogs({});

  CommandOutcome outcome;
  outcome.accepted = host::DialogAccepted(engine);
  outcome.timedOut = channel.TimedOut();
  outcome.alerts.assign(engine.Alerts().begin() + static_cast<long>(alertsShown),
                        engine.Alerts().end());
  if (!changed)
    return outcome;
  musicxml::Score edited = bridge_.Read(current_.score, engine.document());
  outcome.tupletsMade = CountTuplets(edited) - CountTuplets(current_.score);
  outcome.summary = musicxml::ApplyScore(current_.source, edited);
  outcome.changed = true;
  steps_.resize(step_ + 1);
  steps_.push_back(std::make_shared<const std::string>(musicxml::SerializeScore(current_.source)));
  // The next command needs every entry linked to the elements it now stands for.
  ShowStep(step_ + 1);
  return outcome;
}

std::string ScoreSession::FileBytes(bool compressed) const {
  if (!compressed)
    return *steps_[step_];
  TemporaryFolder folder;
  fs::path file = folder.path() / (fs::path(name_).stem().string() + ".mxl");
  musicxml::WriteScoreFile(current_.source, file);
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

} // namespace scribo::web
