#include "EngineThread.h"

namespace scribo::web {

EngineThread::EngineThread() : thread_([this] { Run(); }) {}

EngineThread::~EngineThread() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void EngineThread::Post(std::function<void()> job) {
  {
    std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  wake_.notify_all();
}

void EngineThread::Run() {
  for (;;) {
    std::function<void()> job;
    {
      std::unique_lock lock(mutex_);
      wake_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
      if (jobs_.empty())
        return;
      job = std::move(jobs_.front());
      jobs_.pop_front();
    }
    job();
  }
}

} // namespace scribo::web
