// Runs a VBScript file that is UTF-8 and reports its errors, which the system's own hosts for
// Wine do not: "file(line,column): number source: text" and exit code 1. Beside the language the
// script has an object Host:
//   Host.Echo text                 prints a line
//   Host.Argument(n)               the n-th argument behind the file's name, from 0
//   Host.Connect object, "Prefix"  lets Sub Prefix<Event> handle the object's events
//   Host.Disconnect                ends all connections

#include <windows.h>

#include <activscp.h>
#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr CLSID kVbScript = {
    0xb54f3741, 0x5b07, 0x11cf, {0xa4, 0xb0, 0x00, 0xaa, 0x00, 0x4a, 0x55, 0xe8}};

std::string Utf8(const wchar_t* text, int length = -1) {
  if (!text) return {};
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, length, utf8.data(), size, nullptr, nullptr);
  if (length < 0 && !utf8.empty()) utf8.pop_back();
  return utf8;
}

std::wstring Wide(const std::string& utf8) {
  const int length = static_cast<int>(utf8.size());
  const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, text.data(), size);
  return text;
}

// Everything here lives on the stack of the program, so counting references has no purpose.
template <class Interface>
class OnStack : public Interface {
 public:
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
};

class Automation : public OnStack<IDispatch> {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
};

// Hands the events of one object to the script's procedures. The engine writes back through
// references to variants only, so that is what it gets.
class Sink final : public Automation {
 public:
  Sink(IDispatch* script, IUnknown* source, std::wstring prefix)
      : script_(script), prefix_(std::move(prefix)) {
    IProvideClassInfo2* info = nullptr;
    source->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&info));
    if (!info) return;
    IID events = IID_NULL;
    info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events);
    ITypeInfo* class_info = nullptr;
    ITypeLib* library = nullptr;
    UINT index = 0;
    info->GetClassInfo(&class_info);
    class_info->GetContainingTypeLib(&library, &index);
    library->GetTypeInfoOfGuid(events, &events_);
    library->Release();
    class_info->Release();
    info->Release();
    IConnectionPointContainer* container = nullptr;
    source->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container));
    if (!container) return;
    container->FindConnectionPoint(events, &point_);
    container->Release();
    if (point_) point_->Advise(this, &cookie_);
  }
  ~Sink() { Disconnect(); }

  bool connected() const { return cookie_ != 0; }
  void Disconnect() {
    if (point_) {
      point_->Unadvise(cookie_);
      point_->Release();
      events_->Release();
    }
    point_ = nullptr;
  }

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID locale, WORD, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT*) override {
    BSTR name = nullptr;
    UINT count = 0;
    events_->GetNames(event, &name, 1, &count);
    std::wstring procedure = prefix_ + (name ? name : L"");
    SysFreeString(name);
    auto* names = procedure.data();
    DISPID member = DISPID_UNKNOWN;
    if (FAILED(script_->GetIDsOfNames(IID_NULL, &names, 1, locale, &member))) return S_OK;
    std::vector<VARIANT> copies(arguments->cArgs);
    std::vector<VARIANTARG> references(arguments->cArgs);
    for (UINT at = 0; at < arguments->cArgs; ++at) {
      VariantInit(&copies[at]);
      VariantCopyInd(&copies[at], &arguments->rgvarg[at]);
      V_VT(&references[at]) = VT_BYREF | VT_VARIANT;
      V_VARIANTREF(&references[at]) = &copies[at];
    }
    DISPPARAMS passed{references.data(), nullptr, arguments->cArgs, 0};
    const HRESULT called = script_->Invoke(member, IID_NULL, locale, DISPATCH_METHOD, &passed,
                                           result, exception, nullptr);
    for (VARIANT& copy : copies) VariantClear(&copy);
    return called;
  }

 private:
  IDispatch* script_;
  const std::wstring prefix_;
  ITypeInfo* events_ = nullptr;
  IConnectionPoint* point_ = nullptr;
  DWORD cookie_ = 0;
};

class Host final : public Automation {
 public:
  Host(int count, wchar_t** arguments) : arguments_(arguments, arguments + count) {}
  ~Host() { DisconnectAll(); }

  void SetScript(IDispatch* script) { script_ = script; }
  void DisconnectAll() {
    for (Sink* sink : sinks_) delete sink;
    sinks_.clear();
  }

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* members) override {
    const wchar_t* known[] = {L"Echo", L"Argument", L"Connect", L"Disconnect"};
    for (int at = 0; at < 4; ++at) {
      if (_wcsicmp(names[0], known[at]) != 0) continue;
      members[0] = at + 1;
      return S_OK;
    }
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result,
                      EXCEPINFO*, UINT*) override {
    std::vector<VARIANT> values(arguments->cArgs);
    for (UINT at = 0; at < arguments->cArgs; ++at) {
      VariantInit(&values[at]);
      VariantCopyInd(&values[at], &arguments->rgvarg[arguments->cArgs - 1 - at]);
    }
    const HRESULT called = Call(member, values, result);
    for (VARIANT& value : values) VariantClear(&value);
    return called;
  }

 private:
  HRESULT Call(DISPID member, std::vector<VARIANT>& values, VARIANT* result) {
    switch (member) {
      case 1:
        if (values.size() != 1) return DISP_E_BADPARAMCOUNT;
        if (FAILED(VariantChangeType(&values[0], &values[0], VARIANT_ALPHABOOL, VT_BSTR))) {
          return DISP_E_TYPEMISMATCH;
        }
        std::printf("%s\n", Utf8(V_BSTR(&values[0])).c_str());
        return S_OK;
      case 2: {
        if (values.size() != 1 || !result) return DISP_E_BADPARAMCOUNT;
        if (FAILED(VariantChangeType(&values[0], &values[0], 0, VT_I4))) return DISP_E_TYPEMISMATCH;
        const auto index = static_cast<std::size_t>(V_I4(&values[0]));
        V_VT(result) = VT_BSTR;
        V_BSTR(result) = SysAllocString(index < arguments_.size() ? arguments_[index] : L"");
        return S_OK;
      }
      case 3: {
        if (values.size() != 2 || V_VT(&values[0]) != VT_DISPATCH || V_VT(&values[1]) != VT_BSTR) {
          return DISP_E_TYPEMISMATCH;
        }
        sinks_.push_back(new Sink(script_, V_DISPATCH(&values[0]), V_BSTR(&values[1])));
        return sinks_.back()->connected() ? S_OK : CONNECT_E_CANNOTCONNECT;
      }
      default:
        DisconnectAll();
        return S_OK;
    }
  }

  const std::vector<wchar_t*> arguments_;
  IDispatch* script_ = nullptr;
  std::vector<Sink*> sinks_;
};

class Site final : public OnStack<IActiveScriptSite> {
 public:
  Site(IDispatch* host, std::string file) : host_(host), file_(std::move(file)) {}

  bool failed() const { return failed_; }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == __uuidof(IActiveScriptSite);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP GetLCID(LCID*) override { return E_NOTIMPL; }
  STDMETHODIMP GetItemInfo(LPCOLESTR, DWORD mask, IUnknown** item, ITypeInfo** info) override {
    if (mask & SCRIPTINFO_ITYPEINFO) *info = nullptr;
    if (mask & SCRIPTINFO_IUNKNOWN) *item = host_;
    return S_OK;
  }
  STDMETHODIMP GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  STDMETHODIMP OnStateChange(SCRIPTSTATE) override { return S_OK; }
  STDMETHODIMP OnScriptError(IActiveScriptError* error) override {
    failed_ = true;
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    EXCEPINFO exception{};
    error->GetSourcePosition(&context, &line, &column);
    error->GetExceptionInfo(&exception);
    std::printf("%s(%lu,%ld): 0x%08lX %s: %s\n", file_.c_str(), line + 1, column + 1,
                static_cast<unsigned long>(exception.scode), Utf8(exception.bstrSource).c_str(),
                Utf8(exception.bstrDescription).c_str());
    return S_OK;
  }
  STDMETHODIMP OnEnterScript() override { return S_OK; }
  STDMETHODIMP OnLeaveScript() override { return S_OK; }

 private:
  IDispatch* host_;
  const std::string file_;
  bool failed_ = false;
};

int RunScript(const wchar_t* path, const std::string& text, Host& host) {
  Site site(&host, Utf8(path));
  IActiveScript* engine = nullptr;
  IActiveScriptParse* parser = nullptr;
  HRESULT result =
      CoCreateInstance(kVbScript, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IActiveScript),
                       reinterpret_cast<void**>(&engine));
  if (FAILED(result)) return 3;
  engine->QueryInterface(__uuidof(IActiveScriptParse), reinterpret_cast<void**>(&parser));
  parser->InitNew();
  engine->SetScriptSite(&site);
  engine->AddNamedItem(L"Host", SCRIPTITEM_ISVISIBLE);
  IDispatch* script = nullptr;
  engine->GetScriptDispatch(nullptr, &script);
  host.SetScript(script);
  engine->SetScriptState(SCRIPTSTATE_CONNECTED);
  EXCEPINFO exception{};
  result = parser->ParseScriptText(Wide(text).c_str(), nullptr, nullptr, nullptr, 0, 0, 0,
                                   nullptr, &exception);
  host.DisconnectAll();
  if (script) script->Release();
  engine->Close();
  parser->Release();
  engine->Release();
  return FAILED(result) || site.failed() ? 1 : 0;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 2) return 2;
  std::ifstream file(std::filesystem::path(arguments[1]), std::ios::binary);
  if (!file) return 2;
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  Host host(count - 2, arguments + 2);
  const int result = RunScript(arguments[1], text, host);
  CoUninitialize();
  std::fflush(stdout);
  return result;
}
