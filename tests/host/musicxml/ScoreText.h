// Scores for the MusicXML and scribo-host tests: small ones written inline, the examples and
// the golden files.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <pugixml.hpp>

#include "TestSupport.h"

namespace scoretest {

// A one-part score whose `measures` are complete <measure> elements.
inline std::string OnePart(const std::string& measures, const std::string& partName = "Flute") {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<score-partwise version="4.0"><part-list><score-part id="P1"><part-name>)" +
         partName + R"(</part-name></score-part></part-list><part id="P1">)" + measures +
         "</part></score-partwise>\n";
}

// A first measure numbered `number` in 4/4 with `divisions`, holding `notes`.
inline std::string FirstMeasure(const std::string& notes, int divisions = 1,
                                const std::string& number = "1") {
  return "<measure number=\"" + number + "\"><attributes><divisions>" + std::to_string(divisions) +
         "</divisions><time><beats>4</beats><beat-type>4</beat-type></time></attributes>" + notes +
         "</measure>";
}

inline std::string Note(const std::string& step, int duration, const std::string& type) {
  return "<note><pitch><step>" + step + "</step><octave>4</octave></pitch><duration>" +
         std::to_string(duration) + "</duration><voice>1</voice><type>" + type + "</type></note>";
}

inline std::string Slurp(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

inline std::filesystem::path Example(const std::string& name) {
  return scribotest::SourceDir() / "examples" / name;
}

inline std::filesystem::path Golden(const std::string& name) {
  return scribotest::SourceDir() / "tests" / "host" / "app" / "golden" / name;
}

inline std::filesystem::path TempDir(const std::string& tag) {
  auto dir = std::filesystem::temp_directory_path() /
             ("scribo-mx-" + tag + "-" + std::to_string(::getpid()));
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir;
}

// The document as indented XML: how it was written (indentation, quotes, empty elements) no
// longer shows; declaration, DOCTYPE, elements, attributes and texts remain.
inline std::string CanonicalXml(const std::string& xml) {
  pugi::xml_document doc;
  if (!doc.load_string(xml.c_str(),
                       pugi::parse_default | pugi::parse_declaration | pugi::parse_doctype))
    return "not XML:\n" + xml;
  std::ostringstream text;
  doc.save(text, "  ", pugi::format_indent);
  return text.str();
}

} // namespace scoretest
