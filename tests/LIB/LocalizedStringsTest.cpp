// Localised strings as a plug-in sees them: the probe bundles are loaded like plug-ins, and this
// program plays the host. With no engine bundle loaded, a probe's SX_AlertMessage binds to the
// one exported below, which records every alert.
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

namespace fs = std::filesystem;

namespace {
std::vector<std::string> gAlerts; // "owner kind id version: text"
}

extern "C" __attribute__((visibility("default"))) int
SX_AlertMessage(void* owner, uint32_t kind, int32_t id, const char* text, uint32_t version) {
  gAlerts.push_back(std::to_string(owner != nullptr) + " " + std::to_string(kind) + " " +
                    std::to_string(id) + " " + std::to_string(version) + ": " + text);
  return 1;
}

namespace {

struct Probe {
  char16_t* (*utf16)(int, char16_t*, short);
  char* (*bytes)(int, char*, short);
  short (*loadIndString)(short, short, char*, short);
};

Probe Open(void* handle) {
  return {scribotest::Symbol<decltype(Probe::utf16)>(handle, "Probe_GetUTF16"),
          scribotest::Symbol<decltype(Probe::bytes)>(handle, "Probe_GetBytes"),
          scribotest::Symbol<decltype(Probe::loadIndString)>(handle, "Probe_LoadIndString")};
}

// The text a probe export leaves in a buffer of exactly `size` (a write past it is an overflow
// that the sanitizer build reports), up to the terminator.
template <class Char>
std::basic_string<Char> Fill(Char* (*get)(int, Char*, short), int id, short size) {
  std::vector<Char> buffer(static_cast<size_t>(size), Char('#'));
  EXPECT_EQ(get(id, buffer.data(), size), buffer.data());
  return {buffer.begin(), std::find(buffer.begin(), buffer.end(), Char(0))};
}

fs::path ProbeBundle(const std::string& name) {
  return fs::path(SCRIBO_PROBE_DIR) / (name + ".bundle");
}

// Loads a probe bundle and calls its `main` as a host does, binding it to this program.
Probe Load(const std::string& name) {
  void* handle = scribotest::LoadBundle(ProbeBundle(name));
  int context = 0;
  EXPECT_EQ(scribotest::Symbol<int (*)(int, void*)>(handle, "main")(1, &context), 1);
  return Open(handle);
}

constexpr int Id(int table, int index) {
  return static_cast<int>(static_cast<uint32_t>(table) << 16 | static_cast<uint16_t>(index));
}

TEST(LocalizedStrings, WithoutATableKeysShowAndEveryLookUpAlerts) {
  const Probe p = Load("StringsProbeBare");
  gAlerts.clear();
  const std::pair<int, std::string> keys[] = {
      {Id(20000, 1), "20000,1"}, {65535, "-1"}, {-1, "-1,-1"}, {Id(-32768, 0), "-32768,0"}};
  for (const auto& [id, key] : keys)
    EXPECT_EQ(Fill(p.utf16, id, 128), std::u16string(key.begin(), key.end()));
  char buffer[1] = {'#'};
  // A size below 1 is refused without a look-up (so without an alert) and nothing is written.
  char16_t unit = u'#';
  EXPECT_EQ(p.utf16(5, &unit, 0), nullptr);
  EXPECT_EQ(p.bytes(5, buffer, -3), nullptr);
  EXPECT_EQ(p.loadIndString(0, 5, buffer, 0), 0);
  EXPECT_TRUE(unit == u'#' && buffer[0] == '#');
  // Nothing remembers an earlier alert: one for each of the 4 misses.
  EXPECT_EQ(gAlerts, std::vector<std::string>(4, "0 0 0 " + std::to_string(0x19500000) +
                                                     ": Missing Localizable.strings"));
}

TEST(LocalizedStrings, TranslationsAreCutToTheBufferAndWrittenInMacRoman) {
  const Probe p = Load("StringsProbeTable");
  gAlerts.clear();
  std::u16string digits;
  for (int i = 0; i < 30; ++i)
    digits += u"0123456789";
  const std::tuple<int, short, std::u16string> units[] = {
      {Id(20000, 2), 64, u"Probe \"quoted\"\tdescription"},
      {Id(20000, 1), 1, u""},
      {Id(30000, 1), 128, digits.substr(0, 127)},
      {Id(30000, 1), 301, digits},
      // A missing key, and a key translated as itself, show the key; the table exists: no alert.
      {Id(20000, 9), 16, u"20000,9"},
      {Id(30000, 4), 16, u"30000,4"}};
  for (const auto& [id, size, expected] : units)
    EXPECT_EQ(Fill(p.utf16, id, size), expected) << id << " " << size;
  const std::string bytes(digits.begin(), digits.end());
  const std::tuple<int, short, std::string> texts[] = {
      {Id(30000, 1), 64, bytes.substr(0, 63)},
      {Id(30000, 1), 400, bytes.substr(0, 255)}, // through a 255-byte length-prefixed text
      {Id(30000, 3), 16, "Caf\x8E"},
      {Id(30000, 2), 32, "Quarter ? rest"}};
  for (const auto& [id, size, expected] : texts)
    EXPECT_EQ(Fill(p.bytes, id, size), expected) << id << " " << size;
  char buffer[64];
  EXPECT_EQ(p.loadIndString(-1, -1, buffer, 64), 18);
  EXPECT_STREQ(buffer, "table -1, index -1");
  EXPECT_TRUE(gAlerts.empty());
}

// The image's own bundle is found by walking up from the directory of a relative load path
// too; an image outside any bundle is a broken installation, and the look-up stops the process.
TEST(LocalizedStringsDeathTest, FindsTheBundleAroundItsImageOrStops) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const fs::path copy = scribotest::FreshBundleCopy(ProbeBundle("StringsProbeTable"), "walk");
  const fs::path previous = fs::current_path();
  fs::current_path(copy.parent_path());
  fs::create_directories("lib");
  fs::copy_file(scribotest::BundleExecutable(copy), "lib/probe",
                fs::copy_options::overwrite_existing);
  void* handle = dlopen("StringsProbeTable.bundle/Contents/MacOS/StringsProbeTable", RTLD_NOW);
  ASSERT_NE(handle, nullptr) << dlerror();
  EXPECT_EQ(Fill(Open(handle).utf16, 5, 8), u"five");
  const char* expected = "Assertion failed: \\(bundleRef != NULL\\), function "
                         "CopyPlugInStringResource, file LIB/portable, line 176\\.";
  // An absolute path ends the walk at "/", a relative one at ".".
  EXPECT_DEATH(Fill(Open(dlopen(fs::absolute("lib/probe").c_str(), RTLD_NOW)).utf16, 5, 8),
               expected);
  EXPECT_DEATH(Fill(Open(dlopen("lib/probe", RTLD_NOW)).bytes, 5, 8), expected);
  fs::current_path(previous);
  fs::remove_all(copy.parent_path());
}

} // namespace
