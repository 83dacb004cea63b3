#pragma once

#include <string>

#include "com/com_ptr.h"
#include "com/system.h"
#include "com/text.h"

// The component as a client meets it, loaded from where it was built and used without any
// registration.

namespace tessary::com {

// The system's path of a file that the build named; the build knows no drives.
std::wstring NativePath(const std::string& path);

class Component {
 public:
  Component();
  ~Component() { Unload(); }
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  // A new object of a class.
  template <class Interface>
  ComPtr<Interface> Create(REFCLSID class_id) {
    ComPtr<Interface> object;
    const ComPtr<IClassFactory> factory = Factory(class_id);
    if (factory) {
      result_ = factory->CreateInstance(nullptr, __uuidof(Interface), object.PutVoid());
    }
    return object;
  }
  ComPtr<IClassFactory> Factory(REFCLSID class_id) {
    ComPtr<IClassFactory> factory;
    result_ = get_class_object_(class_id, IID_IClassFactory, factory.PutVoid());
    return factory;
  }
  // Of the last Create or Factory.
  HRESULT result() const { return result_; }
  HRESULT CanUnloadNow() { return module_ ? can_unload_now_() : S_OK; }
  void Unload();

 private:
  HMODULE module_ = nullptr;
  HRESULT(STDAPICALLTYPE* get_class_object_)(REFCLSID, REFIID, void**) = nullptr;
  HRESULT(STDAPICALLTYPE* can_unload_now_)() = nullptr;
  HRESULT result_ = S_OK;
};

// What the last failed call of the thread left as error information: "source: text".
std::string LastError();

}  // namespace tessary::com
