// The document the page shows, kept on the engine thread: the score in the engine, the MusicXML
// text of every undo step (one step per command that changed the score), the plug-in and the
// language its texts appear in.
//
// Thread: the engine thread only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "DialogChannel.h"
#include "EngineBridge.h"
#include "MusicXmlExport.h"
#include "MusicXmlImport.h"
#include "PluginHost.h"

namespace scribo::web {

// A rectangle of measures x staves, numbered from 1 in score order.
struct Selection {
  int firstMeasure = 1;
  int lastMeasure = 1;
  int firstStaff = 1;
  int lastStaff = 1;
};

struct CommandOutcome {
  bool changed = false;  // a new undo step was made
  bool accepted = false; // the dialog ended with OK
  bool timedOut = false; // the dialog was cancelled because it waited too long
  musicxml::ExportSummary summary;
  int tupletsMade = 0;
  std::vector<engine::AlertRecord> alerts; // raised outside the dialog (after it closed)
};

class ScoreSession {
public:
  // Loads the engine and the plug-in bundles; HostError when either cannot be loaded.
  void LoadBundles(const std::filesystem::path& engine, const std::filesystem::path& plugin);

  // Replaces the document with the score in `file`, called `name` from now on. Throws
  // ScoreError, and the document stays as it was.
  void Open(const std::filesystem::path& file, const std::string& name);
  // The same for a file's bytes, uploaded under `name` (messages name it, not a temporary file).
  void OpenBytes(const std::string& bytes, const std::string& name);

  // Runs the command on `selection` (which must lie inside the score) with the dialog's actions
  // from `channel`; the dialog opens on a main screen of `screenWidth` x `screenHeight` points.
  CommandOutcome Run(const Selection& selection, double screenWidth, double screenHeight,
                     DialogChannel& channel);

  bool Undo(); // false when there is no step before
  bool Redo(); // false when there is no step after

  // The plug-in's languages (its .lproj folders, sorted) and the one its texts appear in.
  const std::vector<std::string>& Languages() const { return languages_; }
  const std::string& Language() const { return language_; }
  void SetLanguage(const std::string& language); // one of Languages()
  host::MenuTexts Menu() { return host_.Menu(); }

  // The document as a file: MusicXML text, or a compressed archive (keeping the other members
  // of a compressed input). Throws ScoreError.
  std::string FileBytes(bool compressed) const;

  const std::string& Name() const { return name_; }
  std::shared_ptr<const std::string> Text() const { return steps_[step_]; }
  const musicxml::Score& Score() const { return current_.score; }
  bool CanUndo() const { return step_ > 0; }
  bool CanRedo() const { return step_ + 1 < steps_.size(); }
  uint64_t Revision() const { return revision_; } // new with every document shown

private:
  void Show(musicxml::ImportedScore imported);
  void ShowStep(size_t step);

  host::PluginHost host_;
  std::vector<std::string> languages_;
  std::string language_;
  std::string name_;
  std::vector<std::shared_ptr<const std::string>> steps_;
  size_t step_ = 0;
  musicxml::ImportedScore current_;
  // What a compressed input held besides the score, kept for compressed downloads.
  struct Archive {
    bool used = false;
    std::string scorePath;
    std::vector<musicxml::ArchiveMember> members;
  };
  Archive archive_;
  host::EngineBridge bridge_;
  uint64_t revision_ = 0;
};

} // namespace scribo::web
