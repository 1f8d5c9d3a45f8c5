// A failure of the command-line host with the exit code it ends with. Caught once, in main,
// which prints the message as one line on standard error.
#pragma once

#include <stdexcept>
#include <string>

namespace scribo::host {

enum ExitCode : int {
  kExitOk = 0,
  kExitScoreError = 1,  // a score that cannot be read or written
  kExitRejected = 2,    // the plug-in refused the options, or the dialog was cancelled
  kExitBundleError = 3, // a bundle that cannot be loaded or does not behave as a plug-in
  kExitUsage = 64,      // a bad command line
};

class HostError : public std::runtime_error {
public:
  HostError(int exitCode, const std::string& message)
      : std::runtime_error(message), exitCode_(exitCode) {}
  int exitCode() const { return exitCode_; }

private:
  int exitCode_;
};

} // namespace scribo::host
