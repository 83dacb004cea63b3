#include "com/class_factory.h"

#include <string>

#include "com/com_error.h"
#include "com/module.h"

namespace tessary::com {
namespace {

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const CreatableClass& created) : created_(created) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
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

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    const std::wstring source = std::wstring(L"Tessary.") + created_.name;
    return Guarded({IID_IClassFactory, source.c_str()}, [&] {
      RequirePointer(object);
      *object = nullptr;
      if (outer) throw ComError{CLASS_E_NOAGGREGATION};
      Check(created_.create()->QueryInterface(iid, object));
    });
  }
  STDMETHODIMP LockServer(BOOL lock) override {
    lock ? LockModule() : UnlockModule();
    return S_OK;
  }

 private:
  virtual ~ClassFactory() = default;

  const ModuleLock lock_;
  const CreatableClass& created_;
  LONG references_ = 0;
};

}  // namespace

ComPtr<IClassFactory> NewClassFactory(const CreatableClass& created) {
  return ComPtr<IClassFactory>::Share(new ClassFactory(created));
}

}  // namespace tessary::com
