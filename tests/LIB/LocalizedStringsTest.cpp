// Localised strings as a plug-in sees them: the probe bundles are loaded like plug-ins, and this
// program plays the host. With no engine bundle loaded, a probe's SX_AlertMessage binds to the
// one exported below, which records every alert.
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Alert {
  void* owner;
  uint32_t kind;
  int32_t id;
  std::string text;
  uint32_t version;
};
std::vector<Alert> gAlerts;

} // namespace

extern "C" __attribute__((visibility("default"))) int
SX_AlertMessage(void* owner, uint32_t kind, int32_t id, const char* text, uint32_t version) {
  gAlerts.push_back({owner, kind, id, text ? text : "", version});
  return 1;
}

namespace {

using U16 = std::u16string;

struct Probe {
  void* handle = nullptr;
  unsigned short* (*getUTF16)(int, unsigned short*, short) = nullptr;
  char* (*getBytes)(int, char*, short) = nullptr;
  short (*loadIndString)(short, short, char*, short) = nullptr;
  long (*copy)(int, unsigned short*, int) = nullptr;

  // The text CopyPlugInStringResource gives for `id`; fails the test for a null result or one
  // that the caller does not own alone.
  U16 Copy(int id) const {
    unsigned short units[512];
    EXPECT_EQ(copy(id, units, 512), 1) << "the copied string must belong to the caller alone";
    return U16(reinterpret_cast<const char16_t*>(units));
  }
  U16 UTF16(int id, short size) const {
    std::vector<unsigned short> buffer(static_cast<size_t>(size) + 1, 0xBEEF);
    EXPECT_EQ(getUTF16(id, buffer.data(), size), buffer.data());
    EXPECT_EQ(buffer[static_cast<size_t>(size)], 0xBEEF) << "wrote past destSize";
    return U16(reinterpret_cast<const char16_t*>(buffer.data()));
  }
  std::string Bytes(int id, short size) const {
    std::vector<char> buffer(static_cast<size_t>(size) + 1, '#');
    EXPECT_EQ(getBytes(id, buffer.data(), size), buffer.data());
    EXPECT_EQ(buffer[static_cast<size_t>(size)], '#') << "wrote past destSize";
    return std::string(buffer.data());
  }
};

fs::path ProbeBundle(const std::string& name) {
  return fs::path(SCRIBO_PROBE_DIR) / (name + ".bundle");
}

Probe Open(void* handle) {
  Probe p;
  p.handle = handle;
  p.getUTF16 = scribotest::Symbol<decltype(p.getUTF16)>(handle, "Probe_GetUTF16");
  p.getBytes = scribotest::Symbol<decltype(p.getBytes)>(handle, "Probe_GetBytes");
  p.loadIndString = scribotest::Symbol<decltype(p.loadIndString)>(handle, "Probe_LoadIndString");
  p.copy = scribotest::Symbol<decltype(p.copy)>(handle, "Probe_Copy");
  return p;
}

// Loads a probe bundle and calls its `main` as a host does, binding it to this program.
Probe Load(const fs::path& bundle) {
  Probe p = Open(scribotest::LoadBundle(bundle));
  auto bundleMain = scribotest::Symbol<int (*)(int, void*)>(p.handle, "main");
  int context = 0;
  EXPECT_NE(bundleMain, nullptr);
  EXPECT_EQ(bundleMain(1, &context), 1);
  EXPECT_NE(p.getUTF16, nullptr);
  EXPECT_NE(p.copy, nullptr);
  return p;
}

const Probe& TableProbe() {
  static const Probe probe = Load(ProbeBundle("StringsProbeTable"));
  return probe;
}
const Probe& BareProbe() {
  static const Probe probe = Load(ProbeBundle("StringsProbeBare"));
  return probe;
}

constexpr int Id(int table, int index) {
  return static_cast<int>(static_cast<uint32_t>(table) << 16 | static_cast<uint16_t>(index));
}

TEST(LocalizedStrings, UntranslatedIdentifiersComeBackAsTheirKeysWithAnAlertEachTime) {
  const Probe& p = BareProbe();
  gAlerts.clear();
  EXPECT_EQ(p.Copy(0x4E200001), u"20000,1");
  EXPECT_EQ(p.Copy(5), u"5");
  EXPECT_EQ(p.Copy(65535), u"-1");
  EXPECT_EQ(p.Copy(-1), u"-1,-1");
  EXPECT_EQ(p.Copy(static_cast<int>(0x80000000u)), u"-32768,0");
  EXPECT_EQ(p.Copy(0), u"0");
  EXPECT_EQ(p.UTF16(0x4E200002, 128), u"20000,2");
  EXPECT_EQ(p.Bytes(0x4E200003, 64), "20000,3");
  char buffer[64];
  EXPECT_EQ(p.loadIndString(20000, 2, buffer, 64), 7);
  EXPECT_STREQ(buffer, "20000,2");
  // Nothing remembers an earlier alert: one per miss.
  ASSERT_EQ(gAlerts.size(), 9u);
  for (const Alert& a : gAlerts) {
    EXPECT_EQ(a.owner, nullptr);
    EXPECT_EQ(a.kind, 0u);
    EXPECT_EQ(a.id, 0);
    EXPECT_EQ(a.text, "Missing Localizable.strings");
    EXPECT_EQ(a.version, 0x19500000u);
  }
  // A size of 0 looks nothing up, so it cannot alert.
  unsigned short units[2] = {0xBEEF, 0xBEEF};
  EXPECT_EQ(p.getUTF16(5, units, 0), nullptr);
  EXPECT_EQ(p.getBytes(5, buffer, 0), nullptr);
  EXPECT_EQ(gAlerts.size(), 9u);
}

TEST(LocalizedStrings, TranslatesThroughTheTableAndNeverAlertsWhenOneExists) {
  const Probe& p = TableProbe();
  gAlerts.clear();
  EXPECT_EQ(p.Copy(0x4E200001), u"Probe menu item");
  EXPECT_EQ(p.Copy(0x4E200002), u"Probe \"quoted\" description");
  EXPECT_EQ(p.Copy(5), u"five");
  EXPECT_EQ(p.Copy(65535), u"table 0, index -1");
  EXPECT_EQ(p.Copy(-1), u"table -1, index -1");
  EXPECT_EQ(p.Copy(Id(30000, 3)), u"Caf\u00e9");
  // Missing keys, and a key translated as itself, fall back to the key without an alert.
  EXPECT_EQ(p.Copy(0x4E200009), u"20000,9");
  EXPECT_EQ(p.Copy(Id(30000, 4)), u"30000,4");
  EXPECT_EQ(p.UTF16(6, 16), u"6");
  EXPECT_TRUE(gAlerts.empty());
}

TEST(LocalizedStrings, BuffersAreTruncatedToTheirSizeAndAlwaysTerminated) {
  const Probe& p = TableProbe();
  U16 full;
  for (int i = 0; i < 30; ++i)
    full += u"0123456789";
  ASSERT_EQ(p.Copy(Id(30000, 1)), full);
  EXPECT_EQ(p.UTF16(Id(30000, 1), 128), full.substr(0, 127));
  EXPECT_EQ(p.UTF16(Id(30000, 1), 300), full.substr(0, 299));
  EXPECT_EQ(p.UTF16(Id(30000, 1), 301), full);
  EXPECT_EQ(p.UTF16(0x4E200001, 1), u"");
  EXPECT_EQ(p.UTF16(0x4E200001, 6), u"Probe");
  EXPECT_EQ(p.UTF16(0x4E200001, 16), u"Probe menu item");

  const std::string bytes(full.begin(), full.end());
  EXPECT_EQ(p.Bytes(Id(30000, 1), 64), bytes.substr(0, 63));
  // The byte form goes through a 255-byte length-prefixed text: longer texts keep 255 bytes.
  EXPECT_EQ(p.Bytes(Id(30000, 1), 400), bytes.substr(0, 255));
  EXPECT_EQ(p.Bytes(0x4E200001, 1), "");
  // Bytes are in the application's encoding (Mac Roman); what it lacks becomes '?'.
  EXPECT_EQ(p.Bytes(Id(30000, 3), 16), "Caf\x8E");
  EXPECT_EQ(p.Bytes(Id(30000, 2), 32), "Quarter ? rest");

  char buffer[64];
  EXPECT_EQ(p.loadIndString(30000, 1, buffer, 64), 63);
  EXPECT_EQ(p.loadIndString(20000, 2, buffer, 64), 26);
  EXPECT_STREQ(buffer, "Probe \"quoted\" description");
  EXPECT_EQ(p.loadIndString(-1, -1, buffer, 64), 18);
  EXPECT_STREQ(buffer, "table -1, index -1");

  unsigned short units[1] = {0xBEEF};
  EXPECT_EQ(p.getUTF16(5, units, 0), nullptr);
  EXPECT_EQ(p.getUTF16(5, units, -3), nullptr);
  EXPECT_EQ(units[0], 0xBEEF);
  buffer[0] = '#';
  EXPECT_EQ(p.getBytes(5, buffer, 0), nullptr);
  EXPECT_EQ(p.loadIndString(0, 5, buffer, 0), 0);
  EXPECT_EQ(buffer[0], '#');
}

TEST(LocalizedStrings, FindsItsBundleFromARelativeLoadPath) {
  const fs::path copy = scribotest::FreshBundleCopy(ProbeBundle("StringsProbeTable"), "relative");
  const fs::path previous = fs::current_path();
  fs::current_path(copy.parent_path());
  void* handle = dlopen((copy.filename() / "Contents" / "MacOS" / "StringsProbeTable").c_str(),
                        RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(handle, nullptr) << dlerror();
  const Probe p = Open(handle);
  EXPECT_EQ(p.Copy(5), u"five");
  fs::current_path(previous);
  fs::remove_all(copy.parent_path());
}

// An image outside any bundle is a broken installation: the lookup stops the process.
TEST(LocalizedStringsDeathTest, AnImageOutsideABundleStopsWithTheAssertion) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const fs::path dir = fs::temp_directory_path() / ("scribo-orphan-" + std::to_string(getpid()));
  fs::create_directories(dir / "lib");
  fs::copy_file(scribotest::BundleExecutable(ProbeBundle("StringsProbeTable")),
                dir / "lib" / "probe", fs::copy_options::overwrite_existing);
  const char* expected =
      "Assertion failed: \\(bundleRef != NULL\\), function CopyPlugInStringResource, "
      "file LIB/portable, line 176\\.";
  // An absolute path: the walk ends at "/".
  EXPECT_DEATH(
      {
        const Probe p = Open(dlopen((dir / "lib" / "probe").c_str(), RTLD_NOW | RTLD_LOCAL));
        unsigned short units[8];
        p.getUTF16(5, units, 8);
      },
      expected);
  // A relative path: the walk ends at ".".
  EXPECT_DEATH(
      {
        fs::current_path(dir);
        const Probe p = Open(dlopen("lib/probe", RTLD_NOW | RTLD_LOCAL));
        char bytes[8];
        p.getBytes(5, bytes, 8);
      },
      expected);
  fs::remove_all(dir);
}

} // namespace
