// scribo-host serve: the options of the subcommand that shows the document in the browser.
#pragma once

#include <CLI/CLI.hpp>

#include "WebServer.h"

namespace scribo::host {

// Adds `serve SCORE [--port N] [--plugin BUNDLE] ...` to `app`, filling `options`.
CLI::App* AddServeCommand(CLI::App& app, web::ServeOptions& options);

// Fills in the bundles and folders left unset, then serves until stopped.
int RunServe(web::ServeOptions options);

} // namespace scribo::host
