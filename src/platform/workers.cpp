#include "platform/workers.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace tessary {

Workers::~Workers() {
  Rest();
  for (std::thread& thread : threads_) thread.join();
}

void Workers::Rest() {
  {
    const Lock lock(mutex_);
    resting_ = true;
  }
  changed_.notify_all();
}

void Workers::Post(Job& job, Who who) {
  Lock lock(mutex_);
  waiting_.push_back(&job);
  job.state_ = Job::State::kWaiting;
  if (who == Who::kOwner) return Do(job, lock);
  resting_ = false;
  if (std::cmp_greater_equal(idle_, waiting_.size())) {
    changed_.notify_all();
  } else if (who == Who::kAnyThread && running_ < most_) {
    StartThread();
  }
}

void Workers::StartThread() {
  try {
    threads_.emplace_back([this] { Serve(); });
    ++running_;
  } catch (const std::exception&) {
    // Whoever wants the result does the work.
  }
}

void Workers::Serve() {
  Lock lock(mutex_);
  for (;;) {
    ++idle_;
    changed_.wait(lock, [this] { return resting_ || !waiting_.empty(); });
    --idle_;
    if (waiting_.empty()) break;
    Do(*waiting_.front(), lock);
  }
  --running_;
}

void Workers::Do(Job& job, Lock& lock) noexcept {
  waiting_.erase(std::find(waiting_.begin(), waiting_.end(), &job));
  job.state_ = Job::State::kRunning;
  lock.unlock();
  job.Run();
  lock.lock();
  job.state_ = Job::State::kDone;
  changed_.notify_all();
}

void Workers::Finish(Job& job) {
  Lock lock(mutex_);
  if (job.state_ == Job::State::kWaiting) Do(job, lock);
  while (job.state_ == Job::State::kRunning) {
    if (waiting_.empty()) {
      changed_.wait(lock);
    } else {
      Do(*waiting_.front(), lock);
    }
  }
}

void Workers::Drop(Job& job) noexcept {
  Lock lock(mutex_);
  const auto place = std::find(waiting_.begin(), waiting_.end(), &job);
  if (place != waiting_.end()) waiting_.erase(place);
  if (job.state_ == Job::State::kWaiting) job.state_ = Job::State::kIdle;
  changed_.wait(lock, [&] { return job.state_ != Job::State::kRunning; });
}

}  // namespace tessary
