// scribo-host: the reference host on the command line. Loads the notation engine and a plug-in
// bundle the way the host application does and runs the subdivision command on MusicXML scores.
#include <iostream>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "HostError.h"
#include "ScoreError.h"
#include "ServeCommand.h"

using namespace scribo::host;

namespace {

std::optional<scribo::musicxml::DurationText> DurationOption(const std::string& option,
                                                             const std::string& text) {
  if (text.empty())
    return std::nullopt;
  auto duration = scribo::musicxml::ParseDurationText(text);
  if (!duration)
    throw HostError(kExitUsage, option + " " + text +
                                    ": not a duration; give TDU (1024 is a quarter) or a note "
                                    "name such as quarter, dotted-eighth or 16th");
  return duration;
}

} // namespace

int main(int argc, char** argv) {
  CLI::App app{"scribo-host: runs the Subdivide Notes command on MusicXML scores"};
  app.require_subcommand(1);
  app.set_version_flag("--version", "scribo-host 1.0");
  app.footer("Exit status: 0 done; 1 a score or file that cannot be read or written; 2 the "
             "plug-in rejected the options or the dialog was cancelled (nothing written); 3 a "
             "bundle that cannot be loaded; 64 a bad command line.\n");

  SubdivideRequest request;
  std::string divisions, target, minimum, maximum, measures, staves;
  auto* subdivide =
      app.add_subcommand("subdivide", "Split the notes of a selection into runs of shorter notes");
  subdivide->add_option("INPUT", request.input, "MusicXML score (.musicxml, .xml or .mxl)")
      ->required();
  auto* outputOption =
      subdivide->add_option("-o,--output", request.output, "Where to write the result");
  auto* inPlace =
      subdivide->add_flag("--in-place", request.inPlace, "Overwrite the input with the result");
  outputOption->excludes(inPlace);
  subdivide->add_option(
      "--measures", measures,
      "Measures to select, counted from 1 in score order, e.g. 3-6 (default: all)");
  subdivide->add_option("--staves", staves,
                        "Staves to select, counted from 1 from the top, e.g. 1-2 (default: all)");
  auto* divisionsOption =
      subdivide->add_option("--divisions", divisions, "Split each note into N equal parts (2-32)");
  auto* targetOption = subdivide->add_option(
      "--target", target, "Split each note into parts of this duration (TDU or note name)");
  divisionsOption->excludes(targetOption);
  subdivide->add_option("--min", minimum, "Only notes at least this long (TDU or note name)");
  subdivide->add_option("--max", maximum, "Only notes at most this long (TDU or note name)");
  auto* dialogFlag = subdivide->add_flag("--dialog", request.interactive,
                                         "Answer the options dialog in the terminal");
  dialogFlag->excludes(divisionsOption)->excludes(targetOption);
  subdivide->add_option("--plugin", request.plugin,
                        "Plug-in bundle (default: SubdivideNotes.bundle beside this program)");
  subdivide->add_flag("-q,--quiet", request.quiet, "No progress and no summary");

  std::filesystem::path infoInput;
  auto* info =
      app.add_subcommand("info", "Show the staves, measures, layers and tuplets of a score");
  info->add_option("INPUT", infoInput, "MusicXML score")->required();

  std::filesystem::path menuPlugin;
  auto* menu = app.add_subcommand("menu", "Show the plug-in's menu texts");
  menu->add_option("--plugin", menuPlugin,
                   "Plug-in bundle (default: SubdivideNotes.bundle beside this program)");

  scribo::web::ServeOptions serveOptions;
  auto* serve = AddServeCommand(app, serveOptions);

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    std::cerr << "scribo-host: " << e.what() << " (see scribo-host --help)\n";
    return kExitUsage;
  }

  try {
    if (*subdivide) {
      if (request.output.empty() && !request.inPlace)
        throw HostError(kExitUsage, "subdivide: give -o OUTPUT (or --in-place)");
      if (!request.interactive && divisions.empty() && target.empty())
        throw HostError(kExitUsage,
                        "subdivide: give --divisions N or --target DURATION (or --dialog)");
      if (!divisions.empty())
        request.options.divisions = divisions;
      request.options.target = DurationOption("--target", target);
      request.options.minimum = DurationOption("--min", minimum);
      request.options.maximum = DurationOption("--max", maximum);
      if (!measures.empty())
        request.measures = measures;
      if (!staves.empty())
        request.staves = staves;
      return RunSubdivide(request, std::cerr);
    }
    if (*info)
      return RunInfo(infoInput, std::cout, std::cerr);
    if (*menu)
      return RunMenu(menuPlugin, std::cout);
    if (*serve)
      return RunServe(serveOptions);
  } catch (const HostError& e) {
    std::cerr << "scribo-host: " << e.what() << "\n";
    return e.exitCode();
  } catch (const scribo::musicxml::ScoreError& e) {
    std::cerr << "scribo-host: " << e.what() << "\n";
    return kExitScoreError;
  } catch (const std::exception& e) {
    std::cerr << "scribo-host: " << e.what() << "\n";
    return kExitScoreError;
  }
  return kExitUsage;
}
