#include "DialogChannel.h"

namespace scribo::web {

std::optional<uint64_t> DialogChannel::Begin() {
  std::lock_guard lock(mutex_);
  if (running_ || closed_)
    return std::nullopt;
  running_ = true;
  timedOut_ = false;
  return serial_;
}

std::optional<uint64_t> DialogChannel::Hand(engine::DialogAction action) {
  std::lock_guard lock(mutex_);
  if (!awaiting_ || action_)
    return std::nullopt;
  action_ = std::move(action);
  changed_.notify_all();
  return serial_;
}

Json DialogChannel::WaitPast(uint64_t serial) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return serial_ > serial || closed_; });
  return serial_ > serial ? published_ : Json();
}

std::optional<Json> DialogChannel::OpenDialog() const {
  std::lock_guard lock(mutex_);
  if (!awaiting_ || action_)
    return std::nullopt;
  return published_.at("dialog");
}

bool DialogChannel::Running() const {
  std::lock_guard lock(mutex_);
  return running_;
}

bool DialogChannel::TimedOut() const {
  std::lock_guard lock(mutex_);
  return timedOut_;
}

engine::DialogActionSource
DialogChannel::Source(std::function<Json(const engine::DialogView&)> describe) {
  return [this, describe = std::move(describe)](
             const engine::DialogView& view) -> std::optional<engine::DialogAction> {
    Json state = describe(view);
    std::unique_lock lock(mutex_);
    if (closed_)
      return std::nullopt;
    Publish({{"dialog", std::move(state)}});
    awaiting_ = true;
    bool answered = changed_.wait_for(lock, timeout_, [this] { return action_ || closed_; });
    awaiting_ = false;
    if (!action_) {
      timedOut_ = !answered;
      return std::nullopt; // the host presses Cancel
    }
    std::optional<engine::DialogAction> next = std::move(action_);
    action_.reset();
    return next;
  };
}

void DialogChannel::Finish(Json result) {
  std::lock_guard lock(mutex_);
  Publish({{"result", std::move(result)}});
  running_ = false;
}

void DialogChannel::Close() {
  std::lock_guard lock(mutex_);
  closed_ = true;
  changed_.notify_all();
}

void DialogChannel::Publish(Json state) {
  published_ = std::move(state);
  ++serial_;
  changed_.notify_all();
}

} // namespace scribo::web
