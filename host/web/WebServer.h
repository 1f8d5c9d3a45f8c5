// scribo-host serve: the document in the browser. A server on 127.0.0.1 serves the page (plain
// HTML, CSS and JavaScript modules, Verovio for rendering) and a small JSON API through which
// the page runs the plug-in's command on a selection, answers its dialog, undoes and redoes,
// opens other scores and downloads the result. One thread owns the engine and the plug-in;
// every request that needs them goes through it.
//
// Every /api request carries the session token (header X-Scribo-Token) and a Host of this
// server; those that change anything are POSTs with a JSON body and, when the browser sends
// one, an Origin of this server.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <ostream>

namespace scribo::web {

struct ServeOptions {
  std::filesystem::path score; // opened at the start
  std::filesystem::path engineBundle;
  std::filesystem::path pluginBundle;
  int port = 8765; // 0: any free port
  // A dialog that waits this long for the page's next action is cancelled.
  std::chrono::seconds dialogTimeout{600};
  size_t maxUpload = size_t(32) << 20; // bytes of an opened score file
  std::filesystem::path pageFolder;    // the page's files
  std::filesystem::path verovioFolder; // dist/ of the npm package verovio
};

// The page's folder in the source tree and Verovio's in the project's node_modules.
std::filesystem::path DefaultPageFolder();
std::filesystem::path DefaultVerovioFolder();

// Serves until SIGINT or SIGTERM and returns the exit code. Prints the address to open (with
// the session token) on `out` once the server listens. Throws HostError or ScoreError when it
// cannot start (bundles, score, page files, port).
int Serve(const ServeOptions& options, std::ostream& out);

} // namespace scribo::web
