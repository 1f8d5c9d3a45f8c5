// Resources and localised strings of bundles made on disk for each test.
#include "TestSupport.h"

#include <CoreFoundation/CoreFoundation.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

void Write(const fs::path& file, const std::string& bytes) {
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
}

// A bundle directory with an Info.plist naming `region` as development region.
class TempBundle {
public:
  explicit TempBundle(const std::string& region) {
    static int counter = 0;
    dir_ = fs::temp_directory_path() /
           ("scribo-res-" + std::to_string(getpid()) + "-" + std::to_string(++counter)) /
           "Test.bundle";
    Write(dir_ / "Contents" / "Info.plist",
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
          "<key>CFBundleExecutable</key><string>Test</string>"
          "<key>CFBundleIdentifier</key><string>org.scribo.test.Resources</string>"
          "<key>CFBundleDevelopmentRegion</key><string>" +
              region + "</string></dict></plist>\n");
    const std::string path = dir_.string();
    CFURLRef url = CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<const UInt8*>(path.c_str()), static_cast<CFIndex>(path.size()),
        true);
    bundle_ = CFBundleCreate(nullptr, url);
    CFRelease(url);
  }
  ~TempBundle() {
    CFRelease(bundle_);
    fs::remove_all(dir_.parent_path());
  }
  TempBundle(const TempBundle&) = delete;
  TempBundle& operator=(const TempBundle&) = delete;

  fs::path Resources() const { return dir_ / "Contents" / "Resources"; }
  CFBundleRef Ref() const { return bundle_; }

  // Resource path relative to Contents/Resources, or "-" when there is none.
  std::string Find(CFStringRef name, CFStringRef type, CFStringRef subDir = nullptr) const {
    CFURLRef url = CFBundleCopyResourceURL(bundle_, name, type, subDir);
    if (!url)
      return "-";
    char path[4096];
    EXPECT_TRUE(
        CFURLGetFileSystemRepresentation(url, true, reinterpret_cast<UInt8*>(path), sizeof path));
    CFRelease(url);
    return fs::path(path).lexically_relative(Resources()).string();
  }
  // The localised text of `key` (no value given), as UTF-8.
  std::string Text(const char* key, CFStringRef value = nullptr,
                   CFStringRef table = nullptr) const {
    CFStringRef k = CFStringCreateWithCString(nullptr, key, kCFStringEncodingUTF8);
    CFStringRef text = CFBundleCopyLocalizedString(bundle_, k, value, table);
    CFRelease(k);
    char out[512] = "<null>";
    if (text) {
      EXPECT_TRUE(CFStringGetCString(text, out, sizeof out, kCFStringEncodingUTF8));
      CFRelease(text);
    }
    return out;
  }

private:
  fs::path dir_;
  CFBundleRef bundle_ = nullptr;
};

class Locale {
public:
  Locale(const char* all, const char* messages, const char* lang) {
    Set("LC_ALL", all);
    Set("LC_MESSAGES", messages);
    Set("LANG", lang);
  }
  ~Locale() {
    for (const auto& [name, old] : saved_)
      old.second ? setenv(name.c_str(), old.first.c_str(), 1) : unsetenv(name.c_str());
  }

private:
  void Set(const char* name, const char* value) {
    const char* old = std::getenv(name);
    saved_.push_back({name, {old ? old : "", old != nullptr}});
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  std::vector<std::pair<std::string, std::pair<std::string, bool>>> saved_;
};

TEST(BundleResources, ResourceLookupFollowsTheLanguageOrder) {
  TempBundle b("en");
  Write(b.Resources() / "Localizable.strings", "\"k\" = \"top\";");
  Write(b.Resources() / "Base.lproj" / "Localizable.strings", "\"k\" = \"base\";");
  Write(b.Resources() / "en.lproj" / "Localizable.strings", "\"k\" = \"en\";");
  Write(b.Resources() / "de.lproj" / "Localizable.strings", "\"k\" = \"de\";");
  Write(b.Resources() / "fr.lproj" / "Localizable.strings", "\"k\" = \"fr\";");
  Write(b.Resources() / "Dialogs" / "20256.xml", "<dialog/>");
  Write(b.Resources() / "de.lproj" / "Dialogs" / "20256.xml", "<dialog/>");
  {
    Locale locale("de_DE.UTF-8", "fr_FR", "fr");
    EXPECT_EQ(b.Find(CFSTR("Localizable"), CFSTR("strings")), "de.lproj/Localizable.strings");
    EXPECT_EQ(b.Find(CFSTR("20256"), CFSTR("xml"), CFSTR("Dialogs")), "de.lproj/Dialogs/20256.xml");
    EXPECT_EQ(b.Find(CFSTR("Localizable.strings"), nullptr), "de.lproj/Localizable.strings");
    EXPECT_EQ(b.Find(CFSTR("Missing"), CFSTR("strings")), "-");
  }
  {
    Locale locale("C", "fr_CA@x", "it");
    EXPECT_EQ(b.Text("k"), "fr");
    EXPECT_EQ(b.Find(CFSTR("20256"), CFSTR(".xml"), CFSTR("Dialogs")), "Dialogs/20256.xml");
  }
  {
    Locale locale(nullptr, nullptr, "it_IT");
    EXPECT_EQ(b.Text("k"), "en");
    fs::remove(b.Resources() / "en.lproj" / "Localizable.strings");
    EXPECT_EQ(b.Text("k"), "base");
    fs::remove_all(b.Resources() / "Base.lproj");
    EXPECT_EQ(b.Text("k"), "top");
    fs::remove(b.Resources() / "Localizable.strings");
    EXPECT_EQ(b.Find(CFSTR("Localizable"), CFSTR("strings")), "-");
    EXPECT_EQ(b.Text("k"), "k");
  }
}

TEST(BundleResources, LocalizedStringFallsBackToValueThenKey) {
  Locale locale("C", nullptr, nullptr);
  TempBundle b("en");
  const fs::path table = b.Resources() / "en.lproj" / "Localizable.strings";
  Write(table, "\"20000,1\" = \"Subdivide\";");
  Write(b.Resources() / "en.lproj" / "Other.strings", "\"20000,1\" = \"other table\";");
  EXPECT_EQ(b.Text("20000,1"), "Subdivide");
  EXPECT_EQ(b.Text("20000,1", nullptr, CFSTR("Other")), "other table");
  EXPECT_EQ(b.Text("20000,9"), "20000,9");
  EXPECT_EQ(b.Text("20000,9", CFSTR("given")), "given");
  EXPECT_EQ(b.Text("20000,9", CFSTR("")), "20000,9");
  // The table is read again when the file changes; a malformed file translates nothing.
  Write(table, "\"20000,1\" = \"Subdivide Notes\"; \"20000,2\" = \"two\";");
  EXPECT_EQ(b.Text("20000,1"), "Subdivide Notes");
  Write(table, "\"20000,1\" = \"Subdivide\" /* no semicolon */");
  EXPECT_EQ(b.Text("20000,1"), "20000,1");
  EXPECT_EQ(CFBundleCopyLocalizedString(b.Ref(), nullptr, nullptr, nullptr), nullptr);
}

} // namespace
