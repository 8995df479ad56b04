// The pool's threads: each sleeps on its condition variable between jobs, so a search starts
// with a wake-up and not with a thread start.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "search/searcher.h"

namespace torvy {

enum ThreadState : std::uint32_t { ThreadIdle = 0, ThreadWorking = 1, ThreadEnding = 2 };

class Thread {
 public:
  using Job = void (*)(std::uint32_t index, void* argument);

  Thread(std::uint32_t index, Job job, void* jobArgument) : job(job), jobArgument(jobArgument), index(index) {}
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;
  virtual ~Thread();

  // Marks the job as asked for: from here on the thread counts as busy.
  void request();
  // Wakes the thread to run the job asked for, starting the native thread on first use.
  void launch();
  // Returns once the thread is idle.
  void waitUntilIdle();
  // Waits for the running job, then lets the thread end.
  void end();
  bool isIdle() const { return state.load(std::memory_order_acquire) == ThreadIdle; }

 protected:
  virtual void run() = 0;
  void wake();

  std::thread thread;
  std::mutex mutex;
  std::condition_variable condition;  // wakes the thread and those who wait for it
  Job job;
  void* jobArgument;
  std::atomic<std::uint32_t> state{ThreadIdle};
  std::uint32_t index;
};

class WorkerThread : public Thread {
 public:
  using Thread::Thread;

 protected:
  void run() override;
};

class SearchThread : public WorkerThread {
 public:
  SearchThread(std::uint32_t index, Job job, void* jobArgument, Searcher::Tables tables)
      : WorkerThread(index, job, jobArgument), searcher(index, tables) {}
  ~SearchThread() override { end(); }

  Searcher searcher;
};

}  // namespace torvy
