// Costs of the text layer on the paths a plug-in takes: reading a strings table, looking a
// localised text up, formatting a key, sx_sprintf, and converting to the 8-bit encoding.
#include "StringsFile.h"
#include "sx_string.h"

#include <CoreFoundation/CoreFoundation.h>

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace fs = std::filesystem;

namespace {

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

const std::string& EnglishTable() {
  static const std::string bytes =
      ReadFile(fs::path(SCRIBO_SOURCE_DIR) / "resources/en.lproj/Localizable.strings");
  return bytes;
}

void BM_ParseStringsFile(benchmark::State& state) {
  std::map<std::u16string, std::u16string> table;
  for (auto _ : state) {
    benchmark::DoNotOptimize(scribo::ParseStringsFile(EnglishTable(), table));
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * EnglishTable().size()));
}
BENCHMARK(BM_ParseStringsFile);

// A bundle on disk with the shipped English table; each lookup checks the file and finds the key.
void BM_CopyLocalizedString(benchmark::State& state) {
  const fs::path dir =
      fs::temp_directory_path() / ("scribo-bench-" + std::to_string(getpid())) / "Bench.bundle";
  fs::create_directories(dir / "Contents/Resources/en.lproj");
  std::ofstream(dir / "Contents/Info.plist")
      << "<?xml version=\"1.0\"?><plist "
         "version=\"1.0\"><dict><key>CFBundleExecutable</key><string>Bench"
         "</string><key>CFBundleDevelopmentRegion</key><string>en</string></dict></plist>";
  std::ofstream(dir / "Contents/Resources/en.lproj/Localizable.strings") << EnglishTable();
  const std::string path = dir.string();
  CFURLRef url =
      CFURLCreateFromFileSystemRepresentation(nullptr, reinterpret_cast<const UInt8*>(path.c_str()),
                                              static_cast<CFIndex>(path.size()), true);
  CFBundleRef bundle = CFBundleCreate(nullptr, url);
  CFStringRef key = CFSTR("20000,2");
  for (auto _ : state) {
    CFStringRef text = CFBundleCopyLocalizedString(bundle, key, key, nullptr);
    benchmark::DoNotOptimize(text);
    CFRelease(text);
  }
  CFRelease(bundle);
  CFRelease(url);
  fs::remove_all(dir.parent_path());
}
BENCHMARK(BM_CopyLocalizedString);

void BM_FormatKey(benchmark::State& state) {
  int index = 0;
  for (auto _ : state) {
    CFStringRef key =
        CFStringCreateWithFormat(nullptr, nullptr, CFSTR("%d,%d"), 20000, ++index & 0xFF);
    benchmark::DoNotOptimize(key);
    CFRelease(key);
  }
}
BENCHMARK(BM_FormatKey);

void BM_SxSprintf(benchmark::State& state) {
  static const unsigned short format[] = {'%', 'd', ' ', 'o', 'f', ' ', '%', 's', 0};
  unsigned short out[128];
  for (auto _ : state) {
    benchmark::DoNotOptimize(sx_sprintf(out, 128, format, 3, "Noten"));
  }
}
BENCHMARK(BM_SxSprintf);

void BM_GetPascalString(benchmark::State& state) {
  std::u16string text;
  while (text.size() < 120)
    text += u"Subdivide Notes\u2026 ";
  CFStringRef s = CFStringCreateWithCharacters(
      nullptr, reinterpret_cast<const UniChar*>(text.data()), static_cast<CFIndex>(text.size()));
  Str255 bytes;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        CFStringGetPascalString(s, bytes, sizeof bytes, kCFStringEncodingMacRoman));
  }
  CFRelease(s);
}
BENCHMARK(BM_GetPascalString);

} // namespace

BENCHMARK_MAIN();
