// The page as the source of a dialog's actions, between the engine thread and the HTTP threads.
//
// A command runs on the engine thread. Whenever its dialog waits for the user, the source
// publishes the dialog's state and waits for the page's next action; when the command ends, the
// engine thread publishes its result. HTTP handlers start a command, hand in actions and wait
// for whatever is published next. Only one command runs at a time, and a dialog left without an
// action for longer than the timeout is cancelled so that the engine thread never stays blocked.
//
// Thread: Source() and Finish() on the engine thread; everything else on any thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>

#include <nlohmann/json.hpp>

#include "DialogScript.h"

namespace scribo::web {

using Json = nlohmann::json;

class DialogChannel {
public:
  explicit DialogChannel(std::chrono::milliseconds timeout) : timeout_(timeout) {}

  // Claims the channel for a new command. Nullopt while another command runs (or after Close);
  // otherwise the serial to wait past for the command's first dialog state or its result.
  std::optional<uint64_t> Begin();

  // Hands the waiting dialog its next action. Nullopt when no dialog waits for one (none open,
  // or an action is already on its way); otherwise the serial to wait past.
  std::optional<uint64_t> Hand(engine::DialogAction action);

  // What was published after `serial`: {"dialog": ...} or {"result": ...}. Null after Close.
  Json WaitPast(uint64_t serial);

  // The state of the dialog waiting for an action, if one does.
  std::optional<Json> OpenDialog() const;
  bool Running() const;

  // The source for one command: `describe` turns each state into what the page is shown.
  engine::DialogActionSource Source(std::function<Json(const engine::DialogView&)> describe);
  // True when the running command's dialog was cancelled because it waited too long.
  bool TimedOut() const;
  // The command's result; the channel is free again.
  void Finish(Json result);

  // Ends every wait: a waiting dialog is cancelled and no new command starts.
  void Close();

private:
  void Publish(Json state); // under the lock

  const std::chrono::milliseconds timeout_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  bool running_ = false;
  bool awaiting_ = false; // the dialog waits for an action
  bool timedOut_ = false;
  bool closed_ = false;
  std::optional<engine::DialogAction> action_;
  uint64_t serial_ = 0;
  Json published_;
};

} // namespace scribo::web
