// Score files on disk: uncompressed MusicXML (.musicxml, .xml) and compressed MusicXML (.mxl,
// a zip archive whose META-INF/container.xml names the score). Outputs are written atomically:
// a temporary file beside the target, then a rename, so a failed write leaves nothing behind
// and never a half-written score.
#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

#include "MusicXmlImport.h"

namespace scribo::musicxml {

// Reads and imports a score file; throws ScoreError ("cannot open X: No such file or
// directory", "X: not well-formed XML at line 3: ...").
ImportedScore ReadScoreFile(const std::filesystem::path& path);

// The document as MusicXML text: UTF-8, indented, declaration and DOCTYPE kept.
std::string SerializeScore(const MusicXmlSource& source);

// Writes the document to `path`, compressed when the name ends in ".mxl" (keeping the other
// members of a compressed input). Throws ScoreError when the file cannot be written; the
// target is then unchanged.
void WriteScoreFile(const MusicXmlSource& source, const std::filesystem::path& path);

// Writes `bytes` to `path` through a temporary file in the same folder and a rename.
void WriteFileAtomically(const std::filesystem::path& path, const std::string& bytes);

// The same with the contents written by `fill` into the temporary file. Anything `fill`
// throws removes the temporary file and passes on.
void WriteFileAtomically(const std::filesystem::path& path,
                         const std::function<void(std::FILE*)>& fill);

// True when `path` names a compressed score by its extension (case-insensitive ".mxl").
bool IsCompressedName(const std::filesystem::path& path);

} // namespace scribo::musicxml
