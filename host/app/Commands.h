// The commands of scribo-host: subdivide, info and menu. Each returns the process's exit code
// or throws HostError / ScoreError, which main turns into one line and its exit code.
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

struct SubdivideRequest {
  std::filesystem::path input;
  std::filesystem::path output; // empty with inPlace
  bool inPlace = false;
  std::optional<std::string> measures; // "A-B"; none: every measure
  std::optional<std::string> staves;   // "A-B"; none: every staff
  SubdivideOptions options;
  bool interactive = false; // the options dialog in the terminal instead of the options
  std::filesystem::path plugin;
  bool quiet = false;
};

int RunSubdivide(const SubdivideRequest& request, std::ostream& err);
int RunInfo(const std::filesystem::path& input, std::ostream& out, std::ostream& err);
int RunMenu(const std::filesystem::path& plugin, std::ostream& out);

// What the last options dialog came to: true when it was accepted with OK.
bool DialogAccepted(const engine::Engine& engine);

// The engine bundle this program is linked with, and the plug-in built beside the program.
std::filesystem::path DefaultEngineBundle();
std::filesystem::path DefaultPluginBundle();

} // namespace scribo::host
