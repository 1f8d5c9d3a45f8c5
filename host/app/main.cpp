// scribo-host: the reference host on the command line. Loads the notation engine and a plug-in
// bundle the way the host application does and runs the subdivision command, or any plug-in's
// command, on MusicXML scores.
#include <charconv>
#include <iostream>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "DurationNames.h"
#include "HostError.h"
#include "ScoreError.h"
#include "ServeCommand.h"
#include "TerminalDialog.h"

using namespace scribo::host;

namespace {

constexpr const char* kExitStatusHelp =
    "Exit status: 0 done; 1 a score or file that cannot be read or written; 2 the plug-in "
    "rejected the options or the dialog was cancelled (nothing written); 3 a bundle that cannot "
    "be loaded; 64 a bad command line.\n";
constexpr const char* kMeasuresHelp =
    "Measures to select by the numbers printed in the score, e.g. 3-6, 0 for a pickup, 12a "
    "(default: all)";
constexpr const char* kStavesHelp =
    "Staves to select, counted from 1 from the top, e.g. 1-2 (default: all)";

std::optional<DurationText> DurationOption(const std::string& option, const std::string& text) {
  if (text.empty())
    return std::nullopt;
  auto duration = ParseDurationText(text);
  if (!duration)
    throw HostError(kExitUsage, option + " " + text +
                                    ": not a duration; give TDU (1024 is a quarter) or a note "
                                    "name such as quarter, dotted-eighth, 16th or triplet-eighth "
                                    "(scribo-host subdivide --help lists them)");
  return duration;
}

// The text itself, once it is known to be a whole number.
std::optional<std::string> WholeNumberOption(const std::string& option, const std::string& text) {
  if (text.empty())
    return std::nullopt;
  int value = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size())
    throw HostError(kExitUsage, option + " " + text + ": give a whole number, such as 3");
  return text;
}

std::optional<std::string> Given(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional<std::string>(text);
}

} // namespace

int main(int argc, char** argv) {
  CLI::App app{"scribo-host: runs the Subdivide Notes command, or any plug-in's command, on "
               "MusicXML scores"};
  app.require_subcommand(1);
  app.set_version_flag("--version", "scribo-host 1.0");
  app.footer(kExitStatusHelp);

  SubdivideRequest request;
  std::string divisions, target, minimum, maximum, measures, staves;
  auto* subdivide =
      app.add_subcommand("subdivide", "Split the notes of a selection into runs of shorter notes");
  subdivide
      ->add_option("INPUT", request.input,
                   "MusicXML score (.musicxml, .xml or .mxl; - for standard input)")
      ->required();
  auto* outputOption = subdivide->add_option("-o,--output", request.output,
                                             "Where to write the result (- for standard output)");
  auto* inPlace =
      subdivide->add_flag("--in-place", request.inPlace, "Overwrite the input with the result");
  outputOption->excludes(inPlace);
  subdivide->add_option("--measures", measures, kMeasuresHelp);
  subdivide->add_option("--staves", staves, kStavesHelp);
  auto* divisionsOption =
      subdivide->add_option("--divisions", divisions, "Split each note into N equal parts (2-32)");
  auto* targetOption = subdivide->add_option(
      "--target", target, "Split each note into parts of this duration (TDU or note name)");
  divisionsOption->excludes(targetOption);
  subdivide->add_option("--min", minimum,
                        "Only notes at least this long (TDU or note name); alone: no upper bound");
  subdivide->add_option("--max", maximum,
                        "Only notes at most this long (TDU or note name); alone: no lower bound");
  subdivide->add_flag("--dialog", request.interactive,
                      "Answer the options dialog in the terminal, starting from the options given");
  subdivide->add_option("--plugin", request.plugin,
                        "Plug-in bundle (default: SubdivideNotes.bundle beside this program)");
  subdivide->add_flag("-q,--quiet", request.quiet, "No progress and no summary");
  subdivide->footer(DurationNamesHelp() + "\n" + kExitStatusHelp);

  std::filesystem::path infoInput;
  auto* info =
      app.add_subcommand("info", "Show the staves, measures, layers and tuplets of a score");
  info->add_option("INPUT", infoInput, "MusicXML score (- for standard input)")->required();

  RunRequest run;
  std::string runMeasures, runStaves, runActions;
  auto* runCommand =
      app.add_subcommand("run", "Run any plug-in's menu command on a selection of a score");
  runCommand->add_option("INPUT", run.input, "MusicXML score (- for standard input)")->required();
  runCommand->add_option("--plugin", run.plugin, "The plug-in bundle")->required();
  runCommand->add_option("-o,--output", run.output,
                         "Where to write the score if the plug-in changed it (- for standard "
                         "output)");
  runCommand->add_option("--measures", runMeasures, kMeasuresHelp);
  runCommand->add_option("--staves", runStaves, kStavesHelp);
  auto* actionsOption =
      runCommand->add_option("--actions", runActions,
                             "Answer the plug-in's dialogs with these commands, separated by ; "
                             "(e.g. \"13; 14 3; ok\"; see help in --dialog)");
  runCommand->add_flag("--dialog", run.interactive, "Answer the plug-in's dialogs in the terminal")
      ->excludes(actionsOption);

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
      if (request.inPlace && request.input == "-")
        throw HostError(kExitUsage, "subdivide: --in-place needs a score file, not -");
      if (!request.interactive && divisions.empty() && target.empty())
        throw HostError(kExitUsage,
                        "subdivide: give --divisions N or --target DURATION (or --dialog)");
      request.options.divisions = WholeNumberOption("--divisions", divisions);
      request.options.target = DurationOption("--target", target);
      request.options.minimum = DurationOption("--min", minimum);
      request.options.maximum = DurationOption("--max", maximum);
      request.measures = Given(measures);
      request.staves = Given(staves);
      if (request.interactive && request.input == "-")
        throw HostError(kExitUsage, "subdivide: --dialog reads the terminal, so the score "
                                    "cannot come from standard input");
      return RunSubdivide(request, std::cerr);
    }
    if (*info)
      return RunInfo(infoInput, std::cout, std::cerr);
    if (*runCommand) {
      run.measures = Given(runMeasures);
      run.staves = Given(runStaves);
      run.actions = Given(runActions);
      if (run.actions) {
        std::string problem = CheckDialogCommands(*run.actions);
        if (!problem.empty())
          throw HostError(kExitUsage, "--actions " + problem);
      }
      if (run.interactive && run.input == "-")
        throw HostError(kExitUsage, "run: --dialog reads the terminal, so the score cannot "
                                    "come from standard input");
      return RunPlugin(run, std::cerr);
    }
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
