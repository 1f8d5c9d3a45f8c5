// The page's own files, read once when the server starts and served from memory: nothing else
// on disk can be reached through the server, whatever the request's path says.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace scribo::web {

struct StaticFile {
  std::string contentType;
  std::string bytes;
};

class StaticFiles {
public:
  // Every .html, .css, .js and .mjs file directly inside `page`, at "/<name>" ("/" is
  // index.html), and Verovio's browser module and toolkit from `verovio` (the dist folder of
  // the npm package) at "/vendor/verovio-module.mjs" and "/vendor/verovio.mjs". Throws
  // std::runtime_error naming what is missing.
  StaticFiles(const std::filesystem::path& page, const std::filesystem::path& verovio);

  const StaticFile* Find(const std::string& path) const; // null for any other path

private:
  std::map<std::string, StaticFile> files_;
};

} // namespace scribo::web
