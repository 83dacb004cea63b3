#pragma once

#include <memory>
#include <unordered_map>

#include "com/system.h"
#include "engine/engine_context.h"
#include "manager/result_log.h"

namespace tessary::com {

// What belongs to one thread: its result log, the context of the level objects that clients make
// themselves, and which object of the core has which COM object. It comes into being when the
// thread first uses the component and lives until the thread ends or the DLL is unloaded; objects
// that are held longer keep it alive.
class ThreadState {
 public:
  // The calling thread's.
  static const std::shared_ptr<ThreadState>& Current();

  ThreadState() = default;
  ThreadState(const ThreadState&) = delete;
  ThreadState& operator=(const ThreadState&) = delete;

  bool IsCurrent() const { return thread_id_ == GetCurrentThreadId(); }
  ResultLog& log() { return log_; }

  // The context shared by all level objects, element arrays and line stores that clients hold. It
  // has no message loop: a client's handlers must not find an array in the middle of a change.
  const Ref<EngineContext>& context();

  // Every COM object whose texts live in the context counts itself; they go with the last one.
  void UseContext() { ++context_users_; }
  void ReleaseContext();

  // The COM object that stands for an object of the core, or null. The entry belongs to the COM
  // object, which takes it back when it goes.
  IUnknown* FaceOf(const RefCounted* core) const;
  void SetFace(const RefCounted* core, IUnknown* face) { faces_[core] = face; }
  void ForgetFace(const RefCounted* core) { faces_.erase(core); }

  // True while an operation of the manager runs on this thread.
  bool operating() const { return operating_; }
  void set_operating(bool operating) { operating_ = operating; }

 private:
  const DWORD thread_id_ = GetCurrentThreadId();
  ResultLog log_;
  Ref<EngineContext> context_;
  std::unordered_map<const RefCounted*, IUnknown*> faces_;
  std::size_t context_users_ = 0;
  bool operating_ = false;
};

// While it lives, the thread's context stays. To be made before anything of the context is.
class ContextUse {
 public:
  explicit ContextUse(ThreadState& thread) : thread_(thread) { thread_.UseContext(); }
  ~ContextUse() { thread_.ReleaseContext(); }
  ContextUse(const ContextUse&) = delete;
  ContextUse& operator=(const ContextUse&) = delete;

 private:
  ThreadState& thread_;
};

// While it lives, what the thread's procedures report goes to a collection of its own: calls out
// of a message or event handler leave the entries of what is in progress alone.
class ErrorsAside {
 public:
  explicit ErrorsAside(ThreadState& thread) : errors_(thread.log().errors) {
    std::swap(kept_, errors_.objErrors);
  }
  ~ErrorsAside() { std::swap(kept_, errors_.objErrors); }
  ErrorsAside(const ErrorsAside&) = delete;
  ErrorsAside& operator=(const ErrorsAside&) = delete;

 private:
  SharedErrors& errors_;
  Ref<ErrorCollection> kept_ = MakeRef<ErrorCollection>();
};

// Called by the DLL's entry point. A thread's state is kept in a slot of the system instead of a
// thread_local object, whose destructor would keep the DLL loaded until the thread ends.
bool StartThreadStates() noexcept;
void EndThreadState() noexcept;
void EndAllThreadStates() noexcept;

}  // namespace tessary::com
