// Bundle resources and localised strings.
//
// Resources are looked up in Contents/Resources: first in the language directories of the user
// (the language of LC_ALL, LC_MESSAGES and LANG, in that order), then of the bundle's development
// region, then Base.lproj, then the top level. A strings table is parsed once per file and kept;
// it is read again when the file changes on disk.
#include "CFObject.h"
#include "StringsFile.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

namespace {

// "de_DE.UTF-8@euro" -> "de"; empty for unset variables and for the C and POSIX locales.
std::string LanguageOf(const char* locale) {
  if (!locale)
    return {};
  std::string language(locale);
  language = language.substr(0, language.find_first_of("_.@"));
  if (language == "C" || language == "POSIX")
    return {};
  return language;
}

// The .lproj directories to search, most preferred first, without duplicates.
std::vector<std::string> LanguageDirectories(CFBundleRef bundle) {
  std::vector<std::string> languages;
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
    languages.push_back(LanguageOf(std::getenv(variable)));
  if (auto* region = static_cast<CFStringRef>(
          CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleDevelopmentRegionKey)))
    languages.push_back(cfstandin::ToUTF8(region));
  languages.push_back("Base");
  std::vector<std::string> dirs;
  for (const std::string& language : languages) {
    if (language.empty() || language.find('/') != std::string::npos)
      continue;
    std::string dir = language + ".lproj";
    bool seen = false;
    for (const std::string& d : dirs)
      seen = seen || d == dir;
    if (!seen)
      dirs.push_back(std::move(dir));
  }
  return dirs;
}

std::string FileName(CFStringRef name, CFStringRef type) {
  std::string file = cfstandin::ToUTF8(name);
  std::string extension = cfstandin::ToUTF8(type);
  if (!extension.empty()) {
    if (extension.front() != '.')
      file += '.';
    file += extension;
  }
  return file;
}

// The path of a resource, or empty when the bundle has none of that name.
std::string FindResource(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                         CFStringRef subDir) {
  if (!bundle || !name || cfstandin::Units(name).empty())
    return {};
  const std::string file = FileName(name, type);
  const std::string sub = cfstandin::ToUTF8(subDir);
  const fs::path resources = fs::path(bundle->path) / "Contents" / "Resources";
  std::error_code ec;
  for (const std::string& lproj : LanguageDirectories(bundle)) {
    fs::path candidate = resources / lproj / sub / file;
    if (fs::exists(candidate, ec))
      return candidate.lexically_normal().string();
  }
  fs::path candidate = resources / sub / file;
  if (fs::exists(candidate, ec))
    return candidate.lexically_normal().string();
  return {};
}

struct LoadedTable {
  struct timespec modified {};
  off_t size = -1;
  bool valid = false;
  std::map<std::u16string, std::u16string> entries;
};

struct TableCache {
  std::mutex lock;
  std::map<std::string, LoadedTable> byPath;
};

TableCache& Tables() {
  static auto* cache = new TableCache;
  return *cache;
}

// Looks `key` up in the strings file at `path`; false when the file is unreadable or malformed
// or has no such key.
bool LookUp(const std::string& path, const std::u16string& key, std::u16string& value) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0)
    return false;
  TableCache& cache = Tables();
  std::lock_guard<std::mutex> guard(cache.lock);
  LoadedTable& table = cache.byPath[path];
  if (table.size != info.st_size || table.modified.tv_sec != info.st_mtim.tv_sec ||
      table.modified.tv_nsec != info.st_mtim.tv_nsec) {
    std::ifstream in(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    table.valid = in.good() || in.eof() ? scribo::ParseStringsFile(bytes, table.entries) : false;
    table.size = info.st_size;
    table.modified = info.st_mtim;
  }
  if (!table.valid)
    return false;
  auto it = table.entries.find(key);
  if (it == table.entries.end())
    return false;
  value = it->second;
  return true;
}

} // namespace

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef resourceName,
                                 CFStringRef resourceType, CFStringRef subDirName) {
  const std::string path = FindResource(bundle, resourceName, resourceType, subDirName);
  if (path.empty())
    return nullptr;
  std::error_code ec;
  return CFURLCreateFromFileSystemRepresentation(
      nullptr, reinterpret_cast<const UInt8*>(path.c_str()), static_cast<CFIndex>(path.size()),
      fs::is_directory(path, ec));
}

CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                        CFStringRef tableName) {
  if (key) {
    const std::string path = FindResource(
        bundle, tableName && CFStringGetLength(tableName) > 0 ? tableName : CFSTR("Localizable"),
        CFSTR("strings"), nullptr);
    std::u16string translation;
    if (!path.empty() && LookUp(path, cfstandin::Units(key), translation))
      return cfstandin::MakeString(std::move(translation));
  }
  // Untranslated: the given value, or the key itself when there is no usable value.
  CFStringRef fallback = value && CFStringGetLength(value) > 0 ? value : key;
  return static_cast<CFStringRef>(CFRetain(fallback));
}
