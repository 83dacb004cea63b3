#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "platform/workers.h"

namespace tessary {

// A job that somebody has done, does or will do, or none. One that nobody waits for is given up.
template <class Work>
class PostedWork {
 public:
  PostedWork() = default;
  // `workers` must outlive the work.
  PostedWork(Workers& workers, std::unique_ptr<Work> work,
             Workers::Who who = Workers::Who::kAnyThread)
      : workers_(&workers), work_(std::move(work)) {
    workers_->Post(*work_, who);
  }
  PostedWork(PostedWork&&) noexcept = default;
  PostedWork& operator=(PostedWork&& other) noexcept {
    std::swap(workers_, other.workers_);
    std::swap(work_, other.work_);
    return *this;
  }
  ~PostedWork() {
    if (work_) workers_->Drop(*work_);
  }

  // The work when it is done, which is waited for; null for none.
  Work* Finished() const {
    if (work_) workers_->Finish(*work_);
    return work_.get();
  }

 private:
  Workers* workers_ = nullptr;
  std::unique_ptr<Work> work_;
};

// Has the work for a list of items done a little ahead of their turns.
template <class Work>
class WorkAhead {
 public:
  using Begin = std::function<std::unique_ptr<Work>(std::size_t item)>;

  // Items are counted from 0 to `count` - 1; `begin` gives the work for one of them, in their
  // order, or null for none. `workers` may be null: then nothing is done ahead.
  WorkAhead(Workers* workers, std::size_t count, Begin begin)
      : workers_(workers), count_(workers ? count : 0), begin_(std::move(begin)) {
    PostUpTo(0);
  }

  // The work for an item, or none. Items are asked for in their order; those left out are given
  // up.
  PostedWork<Work> Take(std::size_t item) {
    PostUpTo(item);
    for (; first_ < item && !posted_.empty(); ++first_) posted_.pop_front();
    if (posted_.empty()) return {};
    PostedWork<Work> work = std::move(posted_.front());
    posted_.pop_front();
    ++first_;
    return work;
  }

 private:
  // So that no thread has to wait for the one who takes.
  static constexpr std::size_t kAheadForEachThread = 2;

  void PostUpTo(std::size_t item) {
    const auto threads = static_cast<std::size_t>(workers_ ? workers_->threads() : 0);
    const std::size_t last = item + kAheadForEachThread * threads;
    for (std::size_t next = first_ + posted_.size(); next < count_ && next <= last; ++next) {
      if (std::unique_ptr<Work> work = begin_(next)) {
        posted_.emplace_back(*workers_, std::move(work));
      } else {
        posted_.emplace_back();
      }
      if (next + 1 == count_) workers_->Rest();
    }
  }

  Workers* workers_;
  const std::size_t count_;
  Begin begin_;
  std::size_t first_ = 0;  // the item of the first of `posted_`
  std::deque<PostedWork<Work>> posted_;
};

}  // namespace tessary
