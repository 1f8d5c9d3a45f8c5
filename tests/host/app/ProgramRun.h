// Running the built scribo-host and collecting what it said.
#pragma once

#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "ScoreText.h"

namespace apptest {

struct HostRun {
  int code = -1;
  std::string out;
  std::string err;
};

using scoretest::Slurp;

// A path quoted for the shell.
inline std::string Q(const std::filesystem::path& path) {
  return "'" + path.string() + "'";
}

// Runs `scribo-host ARGS` with standard input from `input`.
inline HostRun RunHost(const std::string& args, const std::string& input = "") {
  auto dir = std::filesystem::temp_directory_path() / ("scribo-run-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  std::ofstream(dir / "stdin") << input;
  std::string command = Q(scribotest::BuildDir() / "scribo-host") + " " + args + " <" +
                        Q(dir / "stdin") + " >" + Q(dir / "stdout") + " 2>" + Q(dir / "stderr");
  int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Slurp(dir / "stdout"),
          Slurp(dir / "stderr")};
}

// The value of `key` in the plug-in's English strings table: the text the user reads.
inline std::string PluginString(const std::string& key) {
  std::istringstream table(
      Slurp(scribotest::SourceDir() / "resources" / "en.lproj" / "Localizable.strings"));
  std::string line;
  std::string prefix = "\"" + key + "\" = \"";
  while (std::getline(table, line))
    if (line.rfind(prefix, 0) == 0)
      return line.substr(prefix.size(), line.rfind("\";") - prefix.size());
  return "(no " + key + ")";
}

} // namespace apptest
