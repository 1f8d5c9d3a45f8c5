#include "StaticFiles.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace scribo::web {

namespace fs = std::filesystem;

namespace {

std::string ReadFile(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in)
    throw std::runtime_error("cannot read " + file.string());
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The server compresses text/* answers on the fly. Verovio's module (about 7 MB, with the
// WebAssembly inlined) would take many seconds that way, so scripts go out under a JavaScript
// type the server leaves alone; on the loopback the size costs nothing.
constexpr const char* kScriptType = "application/javascript; charset=utf-8";

const char* TypeOf(const fs::path& file) {
  std::string extension = file.extension().string();
  if (extension == ".html")
    return "text/html; charset=utf-8";
  if (extension == ".css")
    return "text/css; charset=utf-8";
  if (extension == ".js" || extension == ".mjs")
    return kScriptType;
  return nullptr;
}

} // namespace

StaticFiles::StaticFiles(const fs::path& page, const fs::path& verovio) {
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(page, ec)) {
    const char* type = TypeOf(entry.path());
    if (type && entry.is_regular_file())
      files_["/" + entry.path().filename().string()] = {type, ReadFile(entry.path())};
  }
  auto index = files_.find("/index.html");
  if (index == files_.end())
    throw std::runtime_error("the page's files are missing: no index.html in " + page.string());
  files_["/"] = index->second;
  for (const char* name : {"verovio-module.mjs", "verovio.mjs"}) {
    fs::path file = verovio / name;
    if (!fs::is_regular_file(file, ec))
      throw std::runtime_error("Verovio is missing (" + file.string() +
                               "); run npm ci in the project's folder, or tools/install-deps");
    files_[std::string("/vendor/") + name] = {kScriptType, ReadFile(file)};
  }
}

const StaticFile* StaticFiles::Find(const std::string& path) const {
  auto it = files_.find(path);
  return it == files_.end() ? nullptr : &it->second;
}

} // namespace scribo::web
