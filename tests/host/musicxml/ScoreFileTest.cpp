// Score files: compressed archives, encodings, and writes that either finish or leave nothing.
#include <gtest/gtest.h>

#include <zip.h>

#include <fstream>

#include "ScoreError.h"
#include "ScoreFile.h"
#include "ScoreText.h"

using namespace scribo::musicxml;
using namespace scoretest;
namespace fs = std::filesystem;

namespace {

std::vector<std::string> ArchiveNames(const fs::path& file) {
  int error = 0;
  zip_t* archive = zip_open(file.c_str(), ZIP_RDONLY, &error);
  std::vector<std::string> names;
  if (!archive)
    return names;
  for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i)
    names.push_back(zip_get_name(archive, static_cast<zip_uint64_t>(i), 0));
  zip_close(archive);
  return names;
}

size_t FilesIn(const fs::path& dir) {
  return static_cast<size_t>(std::distance(fs::directory_iterator(dir), fs::directory_iterator()));
}

} // namespace

TEST(ScoreFile, CompressedScoresRoundTripAndKeepTheirOtherMembers) {
  fs::path dir = TempDir("mxl");
  ImportedScore plain = ReadScoreFile(Example("existing-tuplets.musicxml"));
  WriteScoreFile(plain.source, dir / "study.mxl");
  EXPECT_EQ(ArchiveNames(dir / "study.mxl"),
            (std::vector<std::string>{"mimetype", "META-INF/container.xml", "study.musicxml"}));

  // Add a picture to the archive; reading and writing again must keep it.
  {
    int error = 0;
    zip_t* archive = zip_open((dir / "study.mxl").c_str(), 0, &error);
    ASSERT_TRUE(archive);
    static const char kPicture[] = "not really a png";
    zip_source_t* src = zip_source_buffer(archive, kPicture, sizeof kPicture, 0);
    ASSERT_GE(zip_file_add(archive, "images/cover.png", src, 0), 0);
    ASSERT_EQ(zip_close(archive), 0);
  }
  ImportedScore compressed = ReadScoreFile(dir / "study.mxl");
  EXPECT_TRUE(compressed.source.fromArchive);
  EXPECT_EQ(compressed.score.measures.size(), plain.score.measures.size());
  EXPECT_EQ(compressed.score.At(0, 2, 0).entries.size(), 8u);
  WriteScoreFile(compressed.source, dir / "again.mxl");
  auto names = ArchiveNames(dir / "again.mxl");
  ASSERT_EQ(names.size(), 4u);
  EXPECT_EQ(names[0], "mimetype");
  EXPECT_EQ(names[3], "images/cover.png");
  // And as plain MusicXML it is the same text as the original's.
  WriteScoreFile(compressed.source, dir / "plain.musicxml");
  EXPECT_EQ(ReadScoreFile(dir / "plain.musicxml").score.frames.size(), plain.score.frames.size());

  std::ofstream(dir / "broken.mxl") << "PK\x03\x04 and then nothing of a zip";
  EXPECT_THROW(ReadScoreFile(dir / "broken.mxl"), ScoreError);
}

TEST(ScoreFile, Utf16InputIsWrittenAsUtf8WithAMatchingDeclaration) {
  fs::path dir = TempDir("utf16");
  std::string xml =
      OnePart("<measure number=\"1\">" + Attributes(1) + Note("C", 4, 4, "whole") + "</measure>",
              "Fl\xC3\xBBte");
  xml.replace(xml.find("UTF-8"), 5, "UTF-16");
  // UTF-16LE with a byte-order mark; the text is ASCII but for one two-byte letter.
  std::string utf16 = "\xFF\xFE";
  for (size_t i = 0; i < xml.size(); ++i) {
    unsigned char c = static_cast<unsigned char>(xml[i]);
    char16_t unit = c;
    if (c == 0xC3) {
      unit = static_cast<char16_t>(((c & 0x1F) << 6) | (xml[++i] & 0x3F));
    }
    utf16.push_back(static_cast<char>(unit & 0xFF));
    utf16.push_back(static_cast<char>(unit >> 8));
  }
  std::ofstream(dir / "wide.musicxml", std::ios::binary) << utf16;
  ImportedScore imported = ReadScoreFile(dir / "wide.musicxml");
  EXPECT_EQ(imported.score.staves[0].name, "Fl\xC3\xBBte");
  std::string text = SerializeScore(imported.source);
  EXPECT_NE(text.find("encoding=\"UTF-8\""), std::string::npos);
  EXPECT_NE(text.find("Fl\xC3\xBBte"), std::string::npos);
}

TEST(ScoreFile, FailedWritesLeaveNothingBehind) {
  fs::path dir = TempDir("atomic");
  ImportedScore imported = ReadScoreFile(Example("melody-with-chords.musicxml"));
  EXPECT_THROW(WriteScoreFile(imported.source, dir / "missing" / "out.musicxml"), ScoreError);
  fs::create_directories(dir / "folder.musicxml");
  try {
    WriteScoreFile(imported.source, dir / "folder.musicxml");
    ADD_FAILURE() << "wrote over a folder";
  } catch (const ScoreError& e) {
    EXPECT_NE(std::string(e.what()).find("it is a folder"), std::string::npos);
  }
  EXPECT_EQ(FilesIn(dir), 1u); // the folder itself; no temporary file

  std::ofstream(dir / "old.musicxml") << "old contents";
  WriteScoreFile(imported.source, dir / "old.musicxml");
  EXPECT_EQ(FilesIn(dir), 2u);
  EXPECT_EQ(ReadScoreFile(dir / "old.musicxml").score.measures.size(), 8u);

  try {
    ReadScoreFile(dir / "absent.musicxml");
    ADD_FAILURE() << "read a missing file";
  } catch (const ScoreError& e) {
    EXPECT_EQ(std::string(e.what()),
              "cannot open " + (dir / "absent.musicxml").string() + ": No such file or directory");
  }
}
