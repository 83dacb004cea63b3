#pragma once

#include <cstdint>
#include <utility>

namespace tessary {

// Base of objects that several owners share. The count is not synchronised: an object and all its
// owners live on one thread.
class RefCounted {
 public:
  RefCounted() = default;
  RefCounted(const RefCounted&) = delete;
  RefCounted& operator=(const RefCounted&) = delete;

  void AddRef() const { ++references_; }
  void Release() const {
    if (--references_ == 0) delete this;
  }

 protected:
  virtual ~RefCounted() = default;

 private:
  mutable std::uint32_t references_ = 0;
};

// Shared owner of a RefCounted object, or nothing.
template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(std::nullptr_t) {}
  explicit Ref(T* object) : object_(object) {
    if (object_) object_->AddRef();
  }
  Ref(const Ref& other) : Ref(other.object_) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <class U>
  Ref(const Ref<U>& other) : Ref(static_cast<T*>(other.get())) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() {
    if (object_) object_->Release();
  }

  T* get() const { return object_; }
  T& operator*() const { return *object_; }
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  friend bool operator==(const Ref& a, const Ref& b) { return a.object_ == b.object_; }

 private:
  T* object_ = nullptr;
};

template <class T, class... Arguments>
Ref<T> MakeRef(Arguments&&... arguments) {
  return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace tessary
