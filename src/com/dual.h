#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "com/com_error.h"
#include "com/com_ptr.h"
#include "com/dispatch_call.h"
#include "com/module.h"
#include "com/system.h"
#include "com/thread_state.h"

namespace tessary::com {

// What the type library says of a class, and the name under which it reports errors.
struct ClassFacts {
  const CLSID& class_id;
  const IID& interface_id;
  const IID* event_interface_id;  // null: none
  const wchar_t* source;
};

// Base of the component's COM objects: identity, dispatch, class information and errors around a
// dual interface. An object starts with no references, is owned by ComPtr from then on, and
// belongs to the thread that made it.
template <class Interface>
class Dual : public Interface, public ISupportErrorInfo, public IProvideClassInfo2 {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = Find(iid);
    if (!*object) return E_NOINTERFACE;
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

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    return Run([&] {
      RequirePointer(count);
      *count = 1;
    });
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    return Run([&] {
      RequirePointer(info);
      *info = nullptr;
      if (index != 0) throw ComError{DISP_E_BADINDEX};
      *info = TypeInfoOf(facts_.interface_id).Detach();
    });
  }
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                             DISPID* members) override {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    HRESULT found = S_OK;  // an unknown name is an answer, not an error with a text
    const HRESULT result = Run([&] {
      RequirePointer(names);
      RequirePointer(members);
      found = DispGetIDsOfNames(TypeInfoOf(facts_.interface_id).get(), names, count, members);
    });
    return FAILED(result) ? result : found;
  }
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT* argument_in_error) override {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    HRESULT called = S_OK;
    const HRESULT prepared = Run([&] {
      RequirePointer(arguments);
      called = CallByTypeInfo(TypeInfoOf(facts_.interface_id).get(), static_cast<Interface*>(this),
                              member, flags, arguments, result, exception, argument_in_error);
    });
    return FAILED(prepared) ? prepared : called;
  }

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return iid == facts_.interface_id ? S_OK : S_FALSE;
  }

  STDMETHODIMP GetClassInfo(ITypeInfo** info) override {
    return Run([&] {
      RequirePointer(info);
      *info = nullptr;
      *info = TypeInfoOf(facts_.class_id).Detach();
    });
  }
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override {
    if (!guid) return E_POINTER;
    *guid = GUID_NULL;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || !facts_.event_interface_id) return E_INVALIDARG;
    *guid = *facts_.event_interface_id;
    return S_OK;
  }

 protected:
  explicit Dual(const ClassFacts& facts) : facts_(facts) {}
  virtual ~Dual() = default;

  ThreadState& thread() const { return *thread_; }
  const ClassFacts& facts() const { return facts_; }

  // An interface beyond those of every object, or null.
  virtual void* FindMore(REFIID) { return nullptr; }

  // Runs the body of a method. The object outlives it, whatever a handler called from it releases.
  template <class Body>
  HRESULT Run(Body&& body) {
    const auto self = ComPtr<Interface>::Share(this);
    return Guarded({facts_.interface_id, facts_.source}, [&] {
      if (!thread_->IsCurrent()) throw ComError{RPC_E_WRONG_THREAD};
      body();
    });
  }

  // The same for a body that calls the engine. One that comes out of a handler while an operation
  // runs must not disturb what the operation has to report.
  template <class Body>
  HRESULT RunInEngine(Body&& body) {
    return Run([&] {
      std::optional<ErrorsAside> aside;
      if (thread_->operating()) aside.emplace(*thread_);
      body();
    });
  }

 private:
  void* Find(REFIID iid) {
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == facts_.interface_id) {
      return static_cast<Interface*>(this);
    }
    if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
    if (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2) {
      return static_cast<IProvideClassInfo2*>(this);
    }
    return FindMore(iid);
  }

  const ModuleLock lock_;
  const std::shared_ptr<ThreadState> thread_ = ThreadState::Current();
  const ClassFacts& facts_;
  LONG references_ = 0;
};

// A new object as the owner of its first reference.
template <class Class, class... Arguments>
ComPtr<Class> NewObject(Arguments&&... arguments) {
  return ComPtr<Class>::Share(new Class(std::forward<Arguments>(arguments)...));
}

}  // namespace tessary::com
