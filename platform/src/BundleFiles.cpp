#include "BundleFiles.h"

#include "StringsFile.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <pugixml.hpp>

namespace fs = std::filesystem;

namespace scribo {
namespace {

bool HasInfoPlist(const fs::path& dir) {
  std::error_code ec;
  return fs::is_regular_file(dir / "Contents" / "Info.plist", ec);
}

using Table = std::map<std::u16string, std::u16string>;

// Parsed tables by path, each read once: a bundle's files do not change while a host runs.
// Never destroyed, so that look-ups during exit still work.
struct TableCache {
  std::mutex lock;
  std::map<std::string, Table> byPath;
};

TableCache& Tables() {
  static auto* cache = new TableCache;
  return *cache;
}

} // namespace

bool ReadInfoPlist(const std::string& bundleDir, std::map<std::string, std::string>& values) {
  pugi::xml_document doc;
  if (!doc.load_file((bundleDir + "/Contents/Info.plist").c_str()))
    return false;
  pugi::xml_node dict = doc.child("plist").child("dict");
  for (pugi::xml_node key = dict.child("key"); key; key = key.next_sibling("key")) {
    pugi::xml_node value = key.next_sibling();
    if (value && std::string_view(value.name()) == "string")
      values[key.text().get()] = value.text().get();
  }
  return true;
}

std::string BundleOfImage(const std::string& imagePath) {
  char resolved[PATH_MAX];
  fs::path dir = fs::path(realpath(imagePath.c_str(), resolved) ? resolved : imagePath);
  for (dir = dir.parent_path(); !dir.empty() && dir != dir.root_path(); dir = dir.parent_path()) {
    const fs::path extension = dir.extension();
    if ((extension == ".bundle" || extension == ".app") && HasInfoPlist(dir))
      return dir.string();
  }
  return {};
}

std::vector<std::string> LanguageDirectories(std::string_view developmentRegion) {
  std::vector<std::string> languages;
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (!value || !*value)
      continue;
    std::string language(value);
    language.resize(std::min(language.size(), language.find_first_of("_.@")));
    if (language == "C" || language == "POSIX")
      break;
    languages.push_back(std::move(language));
  }
  languages.emplace_back(developmentRegion);
  languages.emplace_back("Base");
  std::vector<std::string> dirs;
  for (const std::string& language : languages) {
    if (language.empty() || language.find('/') != std::string::npos)
      continue;
    std::string dir = language + ".lproj";
    if (std::find(dirs.begin(), dirs.end(), dir) == dirs.end())
      dirs.push_back(std::move(dir));
  }
  return dirs;
}

std::string FindResource(const std::string& bundleDir, std::string_view developmentRegion,
                         std::string_view file) {
  if (file.empty())
    return {};
  const fs::path resources = fs::path(bundleDir) / "Contents" / "Resources";
  std::vector<fs::path> candidates;
  for (const std::string& lproj : LanguageDirectories(developmentRegion))
    candidates.push_back(resources / lproj / file);
  candidates.push_back(resources / file);
  std::error_code ec;
  for (const fs::path& candidate : candidates)
    if (fs::exists(candidate, ec))
      return candidate.lexically_normal().string();
  return {};
}

bool LookUpString(const std::string& path, const std::u16string& key, std::u16string& value) {
  TableCache& cache = Tables();
  std::lock_guard<std::mutex> guard(cache.lock);
  auto [table, inserted] = cache.byPath.try_emplace(path);
  if (inserted) {
    std::ifstream in(path, std::ios::binary);
    ParseStringsFile(std::string(std::istreambuf_iterator<char>(in), {}), table->second);
  }
  auto it = table->second.find(key);
  if (it == table->second.end())
    return false;
  value = it->second;
  return true;
}

} // namespace scribo
