// The one thread that owns the engine and the plug-in. Every call into either runs here, one at
// a time, in the order it was handed in; HTTP handlers hand calls in and wait for the outcome.
//
// Thread: any thread hands jobs in; jobs run on the engine thread.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

namespace scribo::web {

class EngineThread {
public:
  EngineThread();
  ~EngineThread(); // runs the jobs already handed in, then ends the thread
  EngineThread(const EngineThread&) = delete;
  EngineThread& operator=(const EngineThread&) = delete;

  void Post(std::function<void()> job);

  // Runs `job` on the engine thread and returns what it returns; what it throws is thrown here.
  template <class Job> auto Call(Job job) -> decltype(job()) {
    std::packaged_task<decltype(job())()> task(std::move(job));
    auto outcome = task.get_future();
    Post([&task] { task(); });
    return outcome.get();
  }

private:
  void Run();

  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::function<void()>> jobs_;
  bool stopping_ = false;
  std::thread thread_; // last: starts once the queue exists
};

} // namespace scribo::web
