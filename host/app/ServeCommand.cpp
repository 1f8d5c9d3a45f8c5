#include "ServeCommand.h"

#include <iostream>

#include "Commands.h"

namespace scribo::host {

CLI::App* AddServeCommand(CLI::App& app, web::ServeOptions& options) {
  auto* serve = app.add_subcommand(
      "serve", "Show a score in the browser, select measures and run the command there");
  serve->add_option("SCORE", options.score, "MusicXML score (.musicxml, .xml or .mxl)")->required();
  serve->add_option("--port", options.port, "Port on 127.0.0.1 (0: any free port)")
      ->capture_default_str()
      ->check(CLI::Range(0, 65535));
  serve->add_option("--plugin", options.pluginBundle,
                    "Plug-in bundle (default: SubdivideNotes.bundle beside this program)");
  serve
      ->add_option_function<int>(
          "--dialog-timeout",
          [&options](int seconds) { options.dialogTimeout = std::chrono::seconds(seconds); },
          "Seconds a dialog waits for the page before it is cancelled (default 600)")
      ->check(CLI::Range(1, 86400));
  serve
      ->add_option("--max-upload", options.maxUpload,
                   "Largest score file the page may open, in bytes")
      ->capture_default_str()
      ->check(CLI::Range(size_t(1), size_t(1) << 30));
  return serve;
}

int RunServe(web::ServeOptions options) {
  if (options.engineBundle.empty())
    options.engineBundle = DefaultEngineBundle();
  if (options.pluginBundle.empty())
    options.pluginBundle = DefaultPluginBundle();
  if (options.pageFolder.empty())
    options.pageFolder = web::DefaultPageFolder();
  if (options.verovioFolder.empty())
    options.verovioFolder = web::DefaultVerovioFolder();
  return web::Serve(options, std::cout);
}

} // namespace scribo::host
