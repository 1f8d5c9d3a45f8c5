#include "BundleStrings.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <pugixml.hpp>

#include "TextCodec.h"

#if SCRIBO_HAVE_STRINGS_FILE
#include "StringsFile.h"
#endif

namespace scribo::engine {

namespace fs = std::filesystem;

namespace {

std::string LanguageOf(const char* variable) {
  const char* value = std::getenv(variable);
  if (!value)
    return {};
  std::string lang(value);
  size_t cut = lang.find_first_of("_.@");
  if (cut != std::string::npos)
    lang.resize(cut);
  return lang;
}

std::string DevelopmentRegion(const fs::path& bundle) {
  pugi::xml_document doc;
  if (!doc.load_file((bundle / "Contents" / "Info.plist").c_str(), pugi::parse_default,
                     pugi::encoding_utf8))
    return {};
  for (pugi::xml_node key : doc.child("plist").child("dict").children("key"))
    if (std::string_view(key.text().get()) == "CFBundleDevelopmentRegion")
      return key.next_sibling("string").text().get();
  return {};
}

std::optional<fs::path> StringsFileOf(const fs::path& bundle) {
  fs::path resources = bundle / "Contents" / "Resources";
  std::error_code ec;
  for (std::string lang : {LanguageOf("LC_ALL"), LanguageOf("LC_MESSAGES"), LanguageOf("LANG"),
                           DevelopmentRegion(bundle), std::string("Base")}) {
    if (lang.empty() || lang.find('/') != std::string::npos)
      continue;
    fs::path file = resources / (lang + ".lproj") / "Localizable.strings";
    if (fs::is_regular_file(file, ec))
      return file;
  }
  fs::path file = resources / "Localizable.strings";
  if (fs::is_regular_file(file, ec))
    return file;
  return std::nullopt;
}

using Table = std::map<std::u16string, std::u16string>;

// Parsed tables by file, read once per process: bundles do not change while a host runs.
const Table* TableOf(const fs::path& file) {
  static std::map<std::string, Table> cache;
  auto it = cache.find(file.string());
  if (it != cache.end())
    return &it->second;
  Table table;
#if SCRIBO_HAVE_STRINGS_FILE
  std::ifstream in(file, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (!scribo::ParseStringsFile(bytes, table))
    table.clear();
#endif
  return &cache.emplace(file.string(), std::move(table)).first->second;
}

} // namespace

std::optional<std::string> EnclosingBundle(const void* address) {
  Dl_info info{};
  if (!address || !dladdr(address, &info) || !info.dli_fname)
    return std::nullopt;
  std::error_code ec;
  fs::path image = fs::weakly_canonical(info.dli_fname, ec);
  if (ec)
    image = info.dli_fname;
  for (fs::path dir = image.parent_path(); !dir.empty() && dir != dir.root_path();
       dir = dir.parent_path()) {
    if (dir.extension() == ".bundle" && fs::is_regular_file(dir / "Contents" / "Info.plist", ec))
      return dir.string();
  }
  return std::nullopt;
}

std::optional<std::string> LocalizedString(const std::string& bundle, std::string_view key) {
  auto file = StringsFileOf(bundle);
  if (!file)
    return std::nullopt;
  const Table* table = TableOf(*file);
  auto it = table->find(Utf8ToUtf16(key));
  if (it == table->end())
    return std::nullopt;
  return Utf16ToUtf8(it->second);
}

std::string StringKey(int32_t identifier) {
  int table = int16_t(uint16_t(uint32_t(identifier) >> 16));
  int index = int16_t(uint16_t(uint32_t(identifier) & 0xFFFF));
  if (table == 0)
    return std::to_string(index);
  return std::to_string(table) + "," + std::to_string(index);
}

} // namespace scribo::engine
