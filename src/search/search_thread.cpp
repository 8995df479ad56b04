#include "search/search_thread.h"

namespace torvy {

Thread::~Thread() {
  if (thread.joinable()) thread.join();
}

void Thread::wake() {
  std::lock_guard<std::mutex> lock(mutex);
  condition.notify_all();
}

void Thread::request() {
  std::lock_guard<std::mutex> lock(mutex);
  state.store(ThreadWorking, std::memory_order_release);
}

void Thread::launch() {
  wake();
  if (!thread.joinable()) thread = std::thread([this] { run(); });
}

void Thread::waitUntilIdle() {
  std::unique_lock<std::mutex> lock(mutex);
  condition.notify_all();
  condition.wait(lock, [this] { return state.load(std::memory_order_acquire) != ThreadWorking; });
}

void Thread::end() {
  std::unique_lock<std::mutex> lock(mutex);
  condition.wait(lock, [this] { return state.load(std::memory_order_acquire) != ThreadWorking; });
  state.store(ThreadEnding, std::memory_order_release);
  condition.notify_all();
  lock.unlock();
  if (thread.joinable()) thread.join();
}

// The job's end is published under the lock with a direct notify, so that a waiter wakes as
// soon as the thread is idle.
void WorkerThread::run() {
  for (;;) {
    {
      std::unique_lock<std::mutex> lock(mutex);
      condition.wait(lock, [this] { return state.load(std::memory_order_acquire) != ThreadIdle; });
      if (state.load(std::memory_order_acquire) == ThreadEnding) return;
    }
    job(index, jobArgument);
    std::lock_guard<std::mutex> lock(mutex);
    if (state.load(std::memory_order_acquire) == ThreadEnding) return;
    state.store(ThreadIdle, std::memory_order_release);
    condition.notify_all();
  }
}

}  // namespace torvy
