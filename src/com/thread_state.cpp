#include "com/thread_state.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

#include "levels/level_factory.h"

namespace tessary::com {
namespace {

using Owner = std::shared_ptr<ThreadState>;

DWORD slot = TLS_OUT_OF_INDEXES;
std::mutex all_mutex;
std::vector<Owner*>* all = nullptr;  // freed by the entry point, not by the run time

Owner* Start() {
  auto owner = std::make_unique<Owner>(std::make_shared<ThreadState>());
  {
    const std::lock_guard lock(all_mutex);
    all->push_back(owner.get());
  }
  TlsSetValue(slot, owner.get());
  return owner.release();
}

}  // namespace

const std::shared_ptr<ThreadState>& ThreadState::Current() {
  const auto* owner = static_cast<const Owner*>(TlsGetValue(slot));
  return owner ? *owner : *Start();
}

const Ref<EngineContext>& ThreadState::context() {
  if (!context_) context_ = NewEngineContext(log_.errors, nullptr);
  return context_;
}

void ThreadState::ReleaseContext() {
  if (--context_users_ == 0) context_ = nullptr;
}

IUnknown* ThreadState::FaceOf(const RefCounted* core) const {
  const auto found = faces_.find(core);
  return found == faces_.end() ? nullptr : found->second;
}

bool StartThreadStates() noexcept {
  slot = TlsAlloc();
  if (slot == TLS_OUT_OF_INDEXES) return false;
  all = new (std::nothrow) std::vector<Owner*>;
  if (!all) TlsFree(slot);
  return all != nullptr;
}

void EndThreadState() noexcept {
  auto* owner = static_cast<Owner*>(TlsGetValue(slot));
  if (!owner) return;
  TlsSetValue(slot, nullptr);
  {
    const std::lock_guard lock(all_mutex);
    all->erase(std::remove(all->begin(), all->end(), owner), all->end());
  }
  delete owner;
}

void EndAllThreadStates() noexcept {
  if (!all) return;  // The system says goodbye even to a DLL that could not start.
  for (Owner* owner : *all) delete owner;
  delete all;
  all = nullptr;
  TlsFree(slot);
}

}  // namespace tessary::com
