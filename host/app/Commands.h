// The commands of scribo-host: subdivide, run, info and menu. Each returns the process's exit
// code or throws HostError / ScoreError, which main turns into one line and its exit code.
// A score path "-" is standard input (as an input) or standard output (as an output).
#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>

#include "DialogActions.h"

namespace scribo::engine {
class Engine;
}

namespace scribo::host {

// What every command that invokes a plug-in on a score is given.
struct InvokeRequest {
  std::filesystem::path input;
  std::filesystem::path output;        // empty: none (run) or the input (subdivide --in-place)
  std::optional<std::string> measures; // "A-B" in printed measure numbers; none: every measure
  std::optional<std::string> staves;   // "A-B" counted from the top; none: every staff
  bool interactive = false;            // the plug-in's dialogs in the terminal
  std::filesystem::path plugin;
};

struct SubdivideRequest : InvokeRequest {
  bool inPlace = false;
  SubdivideOptions options; // with `interactive`, the dialog's starting values
  bool quiet = false;
};

struct RunRequest : InvokeRequest {
  std::optional<std::string> actions; // dialog commands played instead of the terminal
};

int RunSubdivide(const SubdivideRequest& request, std::ostream& err);
// Any plug-in's menu command on a selection: 0 once the plug-in ran, whatever it returned; the
// output is written only when the plug-in changed the score.
int RunPlugin(const RunRequest& request, std::ostream& err);
int RunInfo(const std::filesystem::path& input, std::ostream& out, std::ostream& err);
int RunMenu(const std::filesystem::path& plugin, std::ostream& out);

// What the last options dialog came to: true when it was accepted with OK.
bool DialogAccepted(const engine::Engine& engine);

// The engine bundle this program is linked with, and the plug-in built beside the program.
std::filesystem::path DefaultEngineBundle();
std::filesystem::path DefaultPluginBundle();

} // namespace scribo::host
