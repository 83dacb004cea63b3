#include "platform/workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>

namespace tessary {
namespace {

class Task : public Job {
 public:
  explicit Task(std::function<void()> work = [] {}) : work_(std::move(work)) {}

  int runs() const { return runs_; }
  std::thread::id thread() const { return thread_; }

 private:
  void Run() noexcept override {
    ++runs_;
    thread_ = std::this_thread::get_id();
    work_();
  }

  std::function<void()> work_;
  std::atomic<int> runs_ = 0;
  std::thread::id thread_;
};

// A task that goes on until it is let go.
class HeldTask : public Task {
 public:
  HeldTask() : Task([this] { Hold(); }) {}

  void AwaitBegin() const {
    while (!begun_) std::this_thread::yield();
  }
  void LetGo() { held_ = false; }

 private:
  void Hold() {
    begun_ = true;
    while (held_) std::this_thread::yield();
  }

  std::atomic<bool> begun_ = false;
  std::atomic<bool> held_ = true;
};

TEST(WorkersTest, EveryJobIsDoneOnce) {
  for (const int threads : {0, 1, 2, 7}) {
    Workers workers(threads);
    std::deque<Task> tasks;
    for (int n = 0; n < 200; ++n) {
      workers.Post(tasks.emplace_back());
      if (n % 3 == 2) workers.Finish(tasks[static_cast<std::size_t>(n) - 1]);
    }
    for (Task& task : tasks) workers.Finish(task);
    for (Task& task : tasks) workers.Finish(task);  // it is done already
    for (Task& task : tasks) EXPECT_EQ(task.runs(), 1) << threads << " threads";
  }
}

TEST(WorkersTest, WithoutThreadsTheCallerDoesTheWorkWhenItsResultIsWanted) {
  Workers workers(0);
  Task first;
  Task second;
  workers.Post(first);
  workers.Post(second);
  EXPECT_EQ(first.runs() + second.runs(), 0);
  workers.Finish(second);
  EXPECT_EQ(second.thread(), std::this_thread::get_id());
  EXPECT_EQ(first.runs(), 0);
  workers.Drop(first);
}

TEST(WorkersTest, AThreadDoesTheWorkBesideTheCaller) {
  Workers workers(1);
  HeldTask task;
  workers.Post(task);
  task.AwaitBegin();
  task.LetGo();
  workers.Finish(task);
  EXPECT_NE(task.thread(), std::this_thread::get_id());
}

TEST(WorkersTest, WhoWaitsDoesWhatIsWaiting) {
  Workers workers(1);
  HeldTask held;
  Task other([&] { held.LetGo(); });
  workers.Post(held);
  held.AwaitBegin();
  workers.Post(other);
  workers.Finish(held);
  EXPECT_EQ(other.thread(), std::this_thread::get_id());
  workers.Finish(other);
}

TEST(WorkersTest, ADroppedJobIsNotBegunAnyMore) {
  for (const int threads : {0, 1}) {
    Workers workers(threads);
    HeldTask held;
    Task dropped;
    Task next;
    if (threads > 0) {
      workers.Post(held);
      held.AwaitBegin();
    }
    workers.Post(dropped);
    workers.Post(next);
    workers.Drop(dropped);
    held.LetGo();
    if (threads > 0) workers.Finish(held);
    workers.Finish(next);
    EXPECT_EQ(dropped.runs(), 0);
    EXPECT_EQ(next.runs(), 1);
  }
}

TEST(WorkersTest, ADroppedJobThatRunsIsWaitedFor) {
  Workers workers(1);
  std::atomic<bool> ended = false;
  std::atomic<bool> begun = false;
  Task task([&] {
    begun = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ended = true;
  });
  workers.Post(task);
  while (!begun) std::this_thread::yield();
  workers.Drop(task);
  EXPECT_TRUE(ended);
}

TEST(WorkersTest, WorkGoesOnAfterARest) {
  Workers workers(2);
  for (int round = 0; round < 50; ++round) {
    std::deque<Task> tasks(3);
    for (Task& task : tasks) workers.Post(task);
    workers.Rest();
    workers.Finish(tasks[2]);
    if (round % 2 == 0) workers.Rest();
    for (Task& task : tasks) {
      workers.Finish(task);
      EXPECT_EQ(task.runs(), 1);
    }
  }
  HeldTask on_a_thread;
  workers.Post(on_a_thread);
  on_a_thread.AwaitBegin();
  on_a_thread.LetGo();
  workers.Drop(on_a_thread);
}

TEST(WorkersTest, TheOwnerDoesItsOwnJobsAtOnce) {
  for (const int threads : {0, 1}) {
    Workers workers(threads);
    HeldTask held;
    Task waiting;
    Task own;
    if (threads > 0) {
      workers.Post(held);
      held.AwaitBegin();
    }
    workers.Post(waiting);
    workers.Post(own, Workers::Who::kOwner);
    EXPECT_EQ(own.thread(), std::this_thread::get_id());
    EXPECT_EQ(own.runs(), 1);
    EXPECT_EQ(waiting.runs(), 0);
    workers.Finish(own);
    EXPECT_EQ(own.runs(), 1);
    held.LetGo();
    workers.Drop(held);
    workers.Finish(waiting);
    EXPECT_EQ(waiting.runs(), 1);
  }
}

TEST(WorkersTest, NoThreadIsStartedForAJobLeftToThoseThereAre) {
  Workers workers(2);
  Task nobodys;
  workers.Post(nobodys, Workers::Who::kThreadsThereAre);
  workers.Finish(nobodys);
  EXPECT_EQ(nobodys.thread(), std::this_thread::get_id());

  HeldTask held;
  Task behind;
  workers.Post(held);
  held.AwaitBegin();
  workers.Post(behind, Workers::Who::kThreadsThereAre);
  workers.Rest();
  held.LetGo();
  while (behind.runs() == 0) std::this_thread::yield();
  workers.Finish(behind);
  workers.Finish(held);
  EXPECT_EQ(behind.thread(), held.thread());
}

TEST(WorkersTest, NoMoreThreadsThanProcessors) {
  EXPECT_EQ(SpareProcessors(0), 0);
  EXPECT_GE(SpareProcessors(3), 0);
  EXPECT_LE(SpareProcessors(3), 3);
  const int all = SpareProcessors(100000);
  EXPECT_LT(all, 100000);
  EXPECT_EQ(SpareProcessors(all), all);
}

}  // namespace
}  // namespace tessary
