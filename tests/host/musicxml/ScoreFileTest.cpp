// Score files: compressed archives, UTF-16 input, and writes that either finish or leave
// nothing behind.
#include <gtest/gtest.h>

#include <zip.h>

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
  for (zip_int64_t i = 0; archive && i < zip_get_num_entries(archive, 0); ++i)
    names.push_back(zip_get_name(archive, static_cast<zip_uint64_t>(i), 0));
  if (archive)
    zip_close(archive);
  return names;
}

size_t FilesIn(const fs::path& dir) {
  return static_cast<size_t>(std::distance(fs::directory_iterator(dir), fs::directory_iterator()));
}

std::string ErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const ScoreError& e) {
    return e.what();
  }
  return "no error";
}

} // namespace

TEST(ScoreFile, CompressedScoresKeepTheArchivesOtherMembers) {
  fs::path dir = TempDir("mxl");
  ImportedScore plain = ReadScoreFile(Golden("triplets.musicxml"));
  WriteScoreFile(plain.source, dir / "study.mxl");
  EXPECT_EQ(ArchiveNames(dir / "study.mxl"),
            (std::vector<std::string>{"mimetype", "META-INF/container.xml", "study.musicxml"}));

  // A picture added to the archive survives reading and writing again.
  int error = 0;
  zip_t* archive = zip_open((dir / "study.mxl").c_str(), 0, &error);
  ASSERT_TRUE(archive);
  static const char kPicture[] = "not really a png";
  zip_source_t* src = zip_source_buffer(archive, kPicture, sizeof kPicture, 0);
  ASSERT_GE(zip_file_add(archive, "images/cover.png", src, 0), 0);
  ASSERT_EQ(zip_close(archive), 0);
  ImportedScore compressed = ReadScoreFile(dir / "study.mxl");
  EXPECT_EQ(SerializeScore(compressed.source), SerializeScore(plain.source));
  WriteScoreFile(compressed.source, dir / "again.mxl");
  EXPECT_EQ(ArchiveNames(dir / "again.mxl"),
            (std::vector<std::string>{"mimetype", "META-INF/container.xml", "study.musicxml",
                                      "images/cover.png"}));

  std::ofstream(dir / "broken.mxl") << "PK\x03\x04 and then nothing of a zip";
  EXPECT_THROW(ReadScoreFile(dir / "broken.mxl"), ScoreError);
}

TEST(ScoreFile, Utf16InputIsWrittenAsUtf8WithAMatchingDeclaration) {
  fs::path dir = TempDir("utf16");
  std::string xml = OnePart(FirstMeasure(Note("C", 4, "whole")), "Fl\xC3\xBBte");
  xml.replace(xml.find("UTF-8"), 5, "UTF-16");
  // UTF-16LE with a byte-order mark; the text is ASCII but for the two-byte letter U+00FB.
  std::string utf16 = "\xFF\xFE";
  for (size_t i = 0; i < xml.size(); ++i) {
    char16_t unit = static_cast<unsigned char>(xml[i]);
    if (unit == 0xC3) {
      unit = 0xFB;
      ++i; // the second byte of the UTF-8 pair
    }
    utf16 += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
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
  ImportedScore imported = ReadScoreFile(Golden("triplets.musicxml"));
  fs::path missing = dir / "missing" / "out.musicxml";
  EXPECT_NE(ErrorOf([&] { WriteScoreFile(imported.source, missing); }), "no error");
  fs::create_directories(dir / "folder.musicxml");
  EXPECT_NE(ErrorOf([&] {
              WriteScoreFile(imported.source, dir / "folder.musicxml");
            }).find("it is a folder"),
            std::string::npos);
  EXPECT_EQ(FilesIn(dir), 1u); // the folder itself; no temporary file

  std::ofstream(dir / "old.musicxml") << "old contents";
  WriteScoreFile(imported.source, dir / "old.musicxml");
  EXPECT_EQ(FilesIn(dir), 2u);
  EXPECT_EQ(Slurp(dir / "old.musicxml"), SerializeScore(imported.source));
  EXPECT_EQ(ErrorOf([&] { ReadScoreFile(dir / "absent.musicxml"); }),
            "cannot open " + (dir / "absent.musicxml").string() + ": No such file or directory");
}
