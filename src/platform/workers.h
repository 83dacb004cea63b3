#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

// Threads that do pieces of work beside their owner's.

namespace tessary {

// A piece of work, done once. What it uses must not be touched by anybody else between Post and
// Finish or Drop.
class Job {
 public:
  Job() = default;
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;
  virtual ~Job() = default;

 private:
  friend class Workers;
  enum class State { kIdle, kWaiting, kRunning, kDone };

  virtual void Run() noexcept = 0;

  State state_ = State::kIdle;
};

// All members are for the owner's thread.
class Workers {
 public:
  // At most `threads` of them, from 0 on, which are started when there is work. Where no thread
  // can be started, the work is done when its result is wanted.
  explicit Workers(int threads) : most_(threads) {}
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  // Every job must have been finished or dropped.
  ~Workers();

  int threads() const { return most_; }

  enum class Who {
    kAnyThread,        // one is started where none is free
    kThreadsThereAre,  // none is started, which takes the owner some time
    kOwner,            // at once
  };

  // Has a job done at some time. It must live until it is finished or dropped.
  void Post(Job& job, Who who = Who::kAnyThread);
  // Returns when the posted job is done. While others do it, the caller does what is waiting.
  void Finish(Job& job);
  // Takes a posted job back: one that has not begun never will, one that runs is waited for.
  void Drop(Job& job) noexcept;
  // Nothing more will be posted for now: threads that find nothing to do end at once, so that
  // nobody has to wait for that later. The next Post starts some again.
  void Rest();

 private:
  using Lock = std::unique_lock<std::mutex>;

  void StartThread();
  void Serve();
  // Takes the job out of the queue and does it, letting go of the lock meanwhile.
  void Do(Job& job, Lock& lock) noexcept;

  const int most_;
  std::mutex mutex_;  // for all below and the states of jobs
  std::condition_variable changed_;
  std::deque<Job*> waiting_;
  int running_ = 0;  // threads that have not ended
  int idle_ = 0;     // of these
  bool resting_ = false;
  std::vector<std::thread> threads_;
};

// How many processors this process may use besides the one that its caller is on, at most
// `most`.
int SpareProcessors(int most);

}  // namespace tessary
