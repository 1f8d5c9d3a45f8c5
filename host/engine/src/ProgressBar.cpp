#include "ProgressBar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace scribo::engine {

namespace {

constexpr int kBarWidth = 40;

bool Shows(const EngineState& state) {
  return state.progress == ProgressDisplay::Terminal && isatty(STDERR_FILENO);
}

} // namespace

void DrawProgress(const EngineState& state, MassEdit& edit) {
  if (!Shows(state))
    return;
  std::string line = "\r[";
  if (edit.jobSize > 0) {
    long done = std::clamp<long>(edit.done, 0, long(edit.jobSize));
    int filled = int(done * kBarWidth / long(edit.jobSize));
    line.append(size_t(filled), '#');
    line.append(size_t(kBarWidth - filled), ' ');
    line += "] " + std::to_string(done * 100 / long(edit.jobSize)) + "% (" + std::to_string(done) +
            "/" + std::to_string(edit.jobSize) + ")";
  } else {
    line.append(size_t(kBarWidth), ' ');
    line += "] " + std::to_string(edit.done);
  }
  std::fputs(line.c_str(), stderr);
  std::fflush(stderr);
  edit.drawn = true;
}

void EraseProgress(const EngineState& state, MassEdit& edit) {
  if (!edit.drawn || !Shows(state))
    return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
  edit.drawn = false;
}

} // namespace scribo::engine
