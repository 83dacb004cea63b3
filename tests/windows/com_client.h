#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "com/variant.h"
#include "windows/component.h"
#include "windows/protocol_closer.h"

// A client of the component, and what is handy for writing one.

namespace tessary::com {

inline BSTR Text(const wchar_t* text) {
  return SysAllocString(text);
}  // the tests' processes are short

inline std::string Take(BSTR text) {
  const std::string utf8 = ToUtf8(text);
  SysFreeString(text);
  return utf8;
}

// Fails a test that leaves objects of the component behind.
class ComClientTest : public testing::Test {
 protected:
  ~ComClientTest() override {
    EXPECT_TRUE(may_stay_held_ || component_.CanUnloadNow() == S_OK) << "objects are still held";
  }
  void SetUp() override { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  void TearDown() override { CoUninitialize(); }

  ComPtr<IXArrayDB> Parsed(const std::vector<const wchar_t*>& lines) {
    const auto report = component_.Create<IBXReportFile>(CLSID_BXReportFile);
    for (const wchar_t* line : lines) EXPECT_EQ(report->AddLine(Text(line)), S_OK);
    ComPtr<IXArrayDB> array;
    EXPECT_EQ(report->get_ReportFile(array.Put()), S_OK);
    return array;
  }
  static LONG Rows(const ComPtr<IXArrayDB>& array) {
    LONG count = -1;
    array->get_Count(1, &count);
    return count;
  }

  Component component_;
  win32::ProtocolCloser closer_;
  // For what the system keeps, and tests behind it in the same process.
  bool may_stay_held_ = component_.CanUnloadNow() != S_OK;
};

inline HRESULT AddSection(IBXLevelBasis* level, const wchar_t* name) {
  const Bstr text{std::wstring_view(name)};
  return level->Add(text.get(), bxsUnknown, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                    nullptr, nullptr, nullptr, nullptr, nullptr, bxltSection);
}

// Calls a member by name; arguments in the order of the call.
inline HRESULT Call(IDispatch* object, const wchar_t* name, WORD flags,
                    std::vector<VARIANT> arguments, VARIANT* result,
                    EXCEPINFO* exception = nullptr) {
  auto* names = const_cast<wchar_t*>(name);
  DISPID member = DISPID_UNKNOWN;
  const HRESULT found = object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member);
  if (FAILED(found)) return found;
  std::vector<VARIANTARG> reversed(arguments.rbegin(), arguments.rend());
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  return object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                        exception, nullptr);
}

inline VARIANT LongValue(LONG number) { return Variant::Long(number).Detach(); }
inline VARIANT TextValue(const wchar_t* text) {
  return Variant::Text(Bstr(std::wstring_view(text))).Detach();
}
inline VARIANT ReferenceTo(VARTYPE type, void* target) {
  VARIANT value{};
  V_VT(&value) = static_cast<VARTYPE>(VT_BYREF | type);
  V_BYREF(&value) = target;
  return value;
}

// A sink that keeps the names it hears, and can call back.
class Sink final : public IDispatch {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*,
                      EXCEPINFO*, UINT*) override {
    heard.push_back(std::to_string(member) + " " + ToUtf8(V_BSTR(&arguments->rgvarg[11])));
    last_level = ComPtr<IBXLevelBasis>::Query(V_DISPATCH(&arguments->rgvarg[0]));
    if (on_event) on_event();
    return E_FAIL;  // changes nothing
  }

  std::vector<std::string> heard;
  ComPtr<IBXLevelBasis> last_level;
  std::function<void()> on_event;
};

inline ComPtr<IConnectionPoint> EventsOf(IBXLevelBasis* level) {
  ComPtr<IConnectionPoint> point;
  ComPtr<IConnectionPointContainer>::Query(level)->FindConnectionPoint(DIID__IBXLevelBasisEvents,
                                                                       point.Put());
  return point;
}

}  // namespace tessary::com
