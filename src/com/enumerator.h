#pragma once

#include <utility>
#include <vector>

#include "com/com_error.h"
#include "com/com_ptr.h"
#include "com/module.h"
#include "com/system.h"

namespace tessary::com {

// A snapshot of items behind one of the enumeration interfaces. `Copy` is a function that stores a
// copy of an item, with a reference of its own, where the caller wants it.
template <class Interface, class Item, class Out, void (*Copy)(const Item&, Out*)>
class Enumerator final : public Interface {
 public:
  static ComPtr<Interface> Make(std::vector<Item> items, std::size_t next = 0) {
    return ComPtr<Interface>::Share(new Enumerator(std::move(items), next));
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != __uuidof(Interface)) return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
  }
  STDMETHODIMP_(ULONG) Release() override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  STDMETHODIMP Next(ULONG count, Out* items, ULONG* fetched) override {
    ULONG done = 0;
    const HRESULT result = Guarded({__uuidof(Interface), L"Tessary"}, [&] {
      if (count > 0) RequirePointer(items);
      if (count > 1) RequirePointer(fetched);
      while (done < count && next_ < items_.size()) Copy(items_[next_++], &items[done++]);
    });
    if (fetched) *fetched = done;
    if (FAILED(result)) return result;
    return done == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG count) override {
    const std::size_t left = items_.size() - next_;
    next_ += count < left ? count : left;
    return count <= left ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() override {
    next_ = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** clone) override {
    return Guarded({__uuidof(Interface), L"Tessary"}, [&] {
      RequirePointer(clone);
      *clone = Make(items_, next_).Detach();
    });
  }

 private:
  Enumerator(std::vector<Item> items, std::size_t next) : items_(std::move(items)), next_(next) {}
  virtual ~Enumerator() = default;

  const ModuleLock lock_;
  const std::vector<Item> items_;
  std::size_t next_;
  LONG references_ = 0;
};

}  // namespace tessary::com
