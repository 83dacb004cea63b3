#pragma once

#include <utility>

#include "com/system.h"

namespace tessary::com {

// Owner of one reference to an interface, or of none.
template <class I>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(const ComPtr& other) : ComPtr(Share(other.pointer_)) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_) pointer_->Release();
  }

  // Takes over a reference that the caller owns.
  static ComPtr Take(I* pointer) {
    ComPtr owner;
    owner.pointer_ = pointer;
    return owner;
  }
  // Adds a reference of its own; `pointer` may be null.
  static ComPtr Share(I* pointer) {
    if (pointer) pointer->AddRef();
    return Take(pointer);
  }
  // The interface `I` of an object, or none where it lacks it; `object` may be null.
  template <class From>
  static ComPtr Query(From* object) {
    ComPtr owner;
    if (object) object->QueryInterface(__uuidof(I), owner.PutVoid());
    return owner;
  }

  I* get() const { return pointer_; }
  I* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  // Hands the reference to the caller.
  I* Detach() { return std::exchange(pointer_, nullptr); }
  // For functions that store a reference; what was owned before is released.
  I** Put() {
    *this = ComPtr();
    return &pointer_;
  }
  void** PutVoid() { return reinterpret_cast<void**>(Put()); }

 private:
  I* pointer_ = nullptr;
};

}  // namespace tessary::com
