// Running the built scribo-host and collecting what it said.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "TestSupport.h"

namespace apptest {

struct HostRun {
  int code = -1;
  std::string out;
  std::string err;
  int ErrLines() const {
    int lines = 0;
    for (char c : err)
      lines += c == '\n';
    return lines;
  }
};

inline std::string Slurp(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// Runs `scribo-host ARGS` with standard input from `input`.
inline HostRun RunHost(const std::string& args, const std::string& input = "") {
  auto dir = std::filesystem::temp_directory_path() / ("scribo-run-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  auto in = dir / "stdin", out = dir / "stdout", err = dir / "stderr";
  std::ofstream(in) << input;
  std::string command = "'" + (scribotest::BuildDir() / "scribo-host").string() + "' " + args +
                        " <'" + in.string() + "' >'" + out.string() + "' 2>'" + err.string() + "'";
  int status = std::system(command.c_str());
  HostRun run;
  run.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.out = Slurp(out);
  run.err = Slurp(err);
  return run;
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
