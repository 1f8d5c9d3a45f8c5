// Small scores written inline for the MusicXML tests, and the schema check.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "TestSupport.h"

namespace scoretest {

// A one-part score whose first measure sets `divisions` and 4/4 (unless `time` is empty);
// `measures` holds complete <measure> elements.
inline std::string OnePart(const std::string& measures, const std::string& partName = "Flute") {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE score-partwise PUBLIC "-//Recordare//DTD MusicXML 4.0 Partwise//EN" "http://www.musicxml.org/dtds/partwise.dtd">
<score-partwise version="4.0"><part-list><score-part id="P1"><part-name>)" +
         partName + R"(</part-name></score-part></part-list><part id="P1">)" + measures +
         "</part></score-partwise>\n";
}

inline std::string Attributes(int divisions, int beats = 4, int beatType = 4) {
  return "<attributes><divisions>" + std::to_string(divisions) + "</divisions><time><beats>" +
         std::to_string(beats) + "</beats><beat-type>" + std::to_string(beatType) +
         "</beat-type></time></attributes>";
}

inline std::string Note(const std::string& step, int octave, int duration, const std::string& type,
                        const std::string& extra = "", const std::string& voice = "1") {
  return "<note><pitch><step>" + step + "</step><octave>" + std::to_string(octave) +
         "</octave></pitch><duration>" + std::to_string(duration) + "</duration><voice>" + voice +
         "</voice><type>" + type + "</type>" + extra + "</note>";
}

inline std::string Rest(int duration, const std::string& type, const std::string& voice = "1") {
  return "<note><rest/><duration>" + std::to_string(duration) + "</duration><voice>" + voice +
         "</voice><type>" + type + "</type></note>";
}

inline std::filesystem::path Example(const std::string& name) {
  return scribotest::SourceDir() / "examples" / name;
}

inline std::filesystem::path TempDir(const std::string& tag) {
  auto dir = std::filesystem::temp_directory_path() /
             ("scribo-mx-" + tag + "-" + std::to_string(::getpid()));
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir;
}

// Schema validation with xmllint; empty when valid, else its report.
inline bool HaveXmllint() {
  return std::system("xmllint --version >/dev/null 2>&1") == 0;
}
inline std::string SchemaErrors(const std::filesystem::path& file) {
  auto schema = scribotest::SourceDir().parent_path() / "shared" / "musicxml-4.0" / "musicxml.xsd";
  auto report = file.string() + ".xmllint";
  std::string command = "xmllint --noout --nonet --schema '" + schema.string() + "' '" +
                        file.string() + "' >'" + report + "' 2>&1";
  if (std::system(command.c_str()) == 0)
    return {};
  std::string text;
  if (FILE* f = std::fopen(report.c_str(), "r")) {
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0)
      text.append(buffer, n);
    std::fclose(f);
  }
  return text.empty() ? "xmllint failed" : text;
}

// Positions of a frame's entries, in order.
template <class FrameT> std::vector<int32_t> Positions(const FrameT& frame) {
  std::vector<int32_t> out;
  for (const auto& e : frame.entries)
    out.push_back(e.position);
  return out;
}

} // namespace scoretest
