#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

#include "com/variant.h"
#include "windows/component.h"

namespace tessary::com {
namespace {

BSTR Text(const wchar_t* text) { return SysAllocString(text); }  // the tests' processes are short

std::string Take(BSTR text) {
  const std::string utf8 = ToUtf8(text);
  SysFreeString(text);
  return utf8;
}

class ComClientTest : public testing::Test {
 protected:
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
};

HRESULT AddSection(IBXLevelBasis* level, const wchar_t* name) {
  const Bstr text{std::wstring_view(name)};
  return level->Add(text.get(), bxsUnknown, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                    nullptr, nullptr, nullptr, nullptr, nullptr, bxltSection);
}

// Calls a member by name; arguments in the order of the call.
HRESULT Call(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments,
             VARIANT* result, EXCEPINFO* exception = nullptr) {
  auto* names = const_cast<wchar_t*>(name);
  DISPID member = DISPID_UNKNOWN;
  const HRESULT found = object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member);
  if (FAILED(found)) return found;
  std::vector<VARIANTARG> reversed(arguments.rbegin(), arguments.rend());
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  return object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                        exception, nullptr);
}

VARIANT LongValue(LONG number) { return Variant::Long(number).Detach(); }
VARIANT TextValue(const wchar_t* text) {
  return Variant::Text(Bstr(std::wstring_view(text))).Detach();
}
VARIANT ReferenceTo(VARTYPE type, void* target) {
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

ComPtr<IConnectionPoint> EventsOf(IBXLevelBasis* level) {
  ComPtr<IConnectionPoint> point;
  ComPtr<IConnectionPointContainer>::Query(level)->FindConnectionPoint(DIID__IBXLevelBasisEvents,
                                                                        point.Put());
  return point;
}

TEST_F(ComClientTest, ManagerAnswersWithABooleanAndLeavesEntries) {
  const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  VARIANT_BOOL result = VARIANT_TRUE;
  ASSERT_EQ(manager->CreateDiffFile(Text(L"Z:\\fehlt\\a.lst"), nullptr, nullptr, &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
  ComPtr<IErrorCollection> errors;
  ComPtr<IErrorCollection> again;
  ASSERT_EQ(manager->get_Errors(errors.Put()), S_OK);
  ASSERT_EQ(manager->get_Errors(again.Put()), S_OK);
  EXPECT_EQ(errors.get(), again.get());
  LONG count = 0;
  errors->get_Count(&count);
  ASSERT_GE(count, 1);
  ComPtr<IErrorEntry> entry;
  ASSERT_EQ(errors->get_Item(1, entry.Put()), S_OK);
  LONG number = 0;
  BSTR text = nullptr;
  entry->get_Number(&number);
  entry->get_Text(&text);
  EXPECT_EQ(static_cast<std::uint32_t>(number), 0x80041389u);
  EXPECT_EQ(Take(text), "Die Datei Z:\\fehlt\\a.lst existiert nicht.");
}

TEST_F(ComClientTest, ErrorsAreEnumeratedAndCloned) {
  const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  VARIANT_BOOL result = VARIANT_TRUE;
  manager->CreateDiffFile(Text(L"Z:\\fehlt.lst"), nullptr, nullptr, &result);
  ComPtr<IErrorCollection> errors;
  manager->get_Errors(errors.Put());
  ComPtr<IUnknown> unknown;
  ASSERT_EQ(errors->get__NewEnum(unknown.Put()), S_OK);
  const auto items = ComPtr<IEnumVARIANT>::Query(unknown.get());
  ComPtr<IEnumVARIANT> clone;
  ASSERT_EQ(items->Clone(clone.Put()), S_OK);
  Variant item;
  ULONG fetched = 0;
  EXPECT_EQ(items->Next(1, item.Put(), &fetched), S_OK);
  EXPECT_EQ(fetched, 1u);
  EXPECT_EQ(item.type(), VT_DISPATCH);
  EXPECT_EQ(items->Skip(1000), S_FALSE);
  EXPECT_EQ(items->Next(1, item.Put(), nullptr), S_FALSE);
  EXPECT_EQ(clone->Next(1, item.Put(), nullptr), S_OK);
  EXPECT_EQ(clone->Next(2, item.Put(), nullptr), E_POINTER);
}

TEST_F(ComClientTest, BadPointersAreAnswered) {
  const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  const auto report = component_.Create<IBXReportFile>(CLSID_BXReportFile);
  const auto array = component_.Create<IXArrayDB>(CLSID_XArrayDB);
  EXPECT_EQ(manager->get_CountCorrectReports(nullptr), E_POINTER);
  EXPECT_EQ(LastError(), "Tessary.BXConvertLLMgr: Ungültiger Zeiger");
  EXPECT_EQ(manager->get_Errors(nullptr), E_POINTER);
  EXPECT_EQ(manager->ConvertReport(nullptr, nullptr, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(level->Compare(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(level->PrepareWriting(nullptr, 0), E_POINTER);
  EXPECT_EQ(level->get_ElementArray(nullptr), E_POINTER);
  EXPECT_EQ(level->GetFoundFieldValue(nullptr, nullptr, nullptr, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(report->GetFirstLine(nullptr), E_POINTER);
  EXPECT_EQ(array->get_Value(1, 1, nullptr), E_POINTER);
  EXPECT_EQ(array->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ComClientTest, RunTimeErrorsKeepTheirNumber) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel3);
  ComPtr<IBXLevelBasis> last;
  EXPECT_EQ(static_cast<std::uint32_t>(level->get_LastElement(last.Put())), 0x800A005Bu);
  EXPECT_EQ(LastError(),
            "Tessary.BXLevel3: Objektvariable oder With-Blockvariable nicht festgelegt");
  EXCEPINFO exception{};
  EXPECT_EQ(Call(level.get(), L"Add", DISPATCH_METHOD, {TextValue(L"[A]"), LongValue(7)}, nullptr,
                 &exception),
            DISP_E_EXCEPTION);
  EXPECT_EQ(static_cast<std::uint32_t>(exception.scode), 0x800A0005u);
  const auto report = component_.Create<IBXReportFile>(CLSID_BXReportFile);
  BSTR line = nullptr;
  EXPECT_EQ(static_cast<std::uint32_t>(report->GetNextLine(&line)), 0x800A005Bu);
}

TEST_F(ComClientTest, ClassesThatCannotBeCreatedAreRefused) {
  EXPECT_FALSE(component_.Create<IErrorCollection>(CLSID_ErrorCollection));
  EXPECT_EQ(component_.result(), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_FALSE(component_.Create<IXArrayDB>(CLSID_BXLevel0));
  EXPECT_EQ(component_.result(), E_NOINTERFACE);
}

TEST_F(ComClientTest, ChildLevelsAreTheSameObjectAndOutliveTheirParent) {
  auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel4);
  ASSERT_EQ(AddSection(level.get(), L"[A]"), S_OK);
  ComPtr<IBXLevelBasis> first;
  ComPtr<IBXLevelBasis> second;
  level->get_LastElement(first.Put());
  level->get_LastElement(second.Put());
  EXPECT_EQ(first.get(), second.get());
  CLSID class_id = CLSID_NULL;
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(ComPtr<IProvideClassInfo2>::Query(first.get())->GetClassInfo(info.Put()), S_OK);
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  class_id = attributes->guid;
  info->ReleaseTypeAttr(attributes);
  EXPECT_EQ(class_id, CLSID_BXLevel5);
  level = {};
  EXPECT_EQ(AddSection(first.get(), L"[B]"), S_OK);
}

TEST_F(ComClientTest, LateBoundCallsTakeNamedAndTypedReferenceArguments) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel1);
  wchar_t add[] = L"Add";
  wchar_t type[] = L"bxltLineType";
  wchar_t name[] = L"strName";
  wchar_t* names[] = {add, type, name};
  DISPID members[3];
  ASSERT_EQ(level->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, members), S_OK);
  VARIANTARG values[] = {LongValue(bxltProperty), TextValue(L"ObjectName=Kopf")};
  DISPPARAMS parameters{values, &members[1], 2, 2};
  ASSERT_EQ(level->Invoke(members[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                          nullptr, nullptr, nullptr),
            S_OK);
  BSTR owner = Text(L"alt");
  LONG owner_level = 7;
  VARIANT field{};
  BSTR value = nullptr;
  VARIANT found{};
  ASSERT_EQ(Call(level.get(), L"GetFoundFieldValue", DISPATCH_METHOD,
                 {ReferenceTo(VT_BSTR, &owner), ReferenceTo(VT_I4, &owner_level),
                  ReferenceTo(VT_VARIANT, &field), ReferenceTo(VT_BSTR, &value)},
                 &found),
            S_OK);
  EXPECT_EQ(V_BOOL(&found), VARIANT_TRUE);
  EXPECT_EQ(Take(owner), "[Object]");
  EXPECT_EQ(owner_level, 0);
  EXPECT_EQ(V_VT(&field), VT_I4);
  EXPECT_EQ(V_I4(&field), bxeaTyp);
  EXPECT_EQ(Take(value), "Kopf");
}

TEST_F(ComClientTest, LateBoundFailuresFillTheException) {
  const auto array = component_.Create<IXArrayDB>(CLSID_XArrayDB);
  EXCEPINFO exception{};
  VARIANT result{};
  EXPECT_EQ(Call(array.get(), L"Value", DISPATCH_PROPERTYGET, {LongValue(1), LongValue(1)}, &result,
                 &exception),
            DISP_E_EXCEPTION);
  EXPECT_EQ(static_cast<std::uint32_t>(exception.scode), 0x800A0009u);
  EXPECT_EQ(Take(exception.bstrSource), "Tessary.XArrayDB");
  EXPECT_EQ(Take(exception.bstrDescription), "Index außerhalb des gültigen Bereichs");
  SysFreeString(exception.bstrHelpFile);
  EXPECT_EQ(Call(array.get(), L"GibtEsNicht", DISPATCH_METHOD, {}, &result), DISP_E_UNKNOWNNAME);
}

TEST_F(ComClientTest, ObjectsOfAnotherKindAreATypeMismatch) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  const auto other = component_.Create<IBXReportFile>(CLSID_BXReportFile);
  VARIANT wrong = Variant::Object(ComPtr<IDispatch>::Query(other.get()).Detach()).Detach();
  VARIANT array{};
  for (const VARIANT& value : {wrong, ReferenceTo(VT_VARIANT, &wrong), LongValue(5)}) {
    EXPECT_EQ(Call(level.get(), L"Compare", DISPATCH_METHOD,
                   {value, ReferenceTo(VT_VARIANT, &array)}, nullptr),
              DISP_E_TYPEMISMATCH);
  }
}

TEST_F(ComClientTest, ReferencesToObjectsReceiveWhatIsMade) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  AddSection(level.get(), L"[A]");
  VARIANT from_script{};
  ASSERT_EQ(Call(level.get(), L"PrepareWriting", DISPATCH_METHOD,
                 {ReferenceTo(VT_VARIANT, &from_script)}, nullptr),
            S_OK);
  EXPECT_EQ(V_VT(&from_script), VT_DISPATCH);
  IDispatch* typed = nullptr;
  ASSERT_EQ(Call(level.get(), L"PrepareWriting", DISPATCH_METHOD,
                 {ReferenceTo(VT_DISPATCH, &typed), LongValue(3)}, nullptr),
            S_OK);
  const auto lines = ComPtr<IXArrayDB>::Query(typed);
  ASSERT_TRUE(lines);
  EXPECT_EQ(Rows(lines), 1);
  typed->Release();
  VariantClear(&from_script);
}

TEST_F(ComClientTest, WriteArraysGrowAndBelongToTheClientOnceChanged) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel2);
  AddSection(level.get(), L"[A]");
  IXArrayDB* lines = nullptr;
  ASSERT_EQ(level->PrepareWriting(&lines, 0), S_OK);
  ASSERT_EQ(lines->put_Value(1, 1, TextValue(L"[Eigene]")), S_OK);
  ASSERT_EQ(level->PrepareWriting(&lines, 0), S_OK);
  const auto owner = ComPtr<IXArrayDB>::Take(lines);
  EXPECT_EQ(Rows(owner), 2);
  Variant cell;
  owner->get_Value(1, 1, cell.Put());
  EXPECT_EQ(ToUtf8(V_BSTR(&cell.get())), "[Eigene]");
  owner->get_Value(2, 0, cell.Put());
  EXPECT_EQ(V_I4(&cell.get()), 2);
}

TEST_F(ComClientTest, EventsReachEverySinkAndTheLevelClass) {
  const auto report = Parsed({L"[A]", L"X=1"});
  const auto diff = Parsed({L"N(Key=[B]:Typ=:PrevName=[A]:PrevKey=[A]:PrevTyp=:"
                            L"NextName=:NextKey=:NextTyp=:PosNr=);[B]"});
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  Sink first;
  Sink second;
  DWORD first_cookie = 0;
  DWORD second_cookie = 0;
  ASSERT_EQ(EventsOf(level.get())->Advise(&first, &first_cookie), S_OK);
  ASSERT_EQ(EventsOf(level.get())->Advise(&second, &second_cookie), S_OK);
  EXPECT_NE(first_cookie, second_cookie);
  // A sink may do what it likes to the level, even to the array that is being changed.
  second.on_event = [&] { level->putref_ElementArray(nullptr); };
  EXPECT_EQ(static_cast<std::uint32_t>(level->Convert(report.get(), diff.get())), 0x800A005Bu);
  second.on_event = nullptr;
  EXPECT_EQ(level->Convert(report.get(), diff.get()), S_OK);
  EXPECT_EQ(first.heard, (std::vector<std::string>{"1 [B]", "1 [B]"}));
  EXPECT_EQ(second.heard, first.heard);
  EXPECT_TRUE(first.last_level);
  EXPECT_EQ(Rows(report), 2);
  Variant child;
  report->get_Value(2, 12, child.Put());
  EXPECT_EQ(ComPtr<IBXLevelBasis>::Query(V_DISPATCH(&child.get())).get(), first.last_level.get());
  EXPECT_EQ(EventsOf(level.get())->Unadvise(first_cookie), S_OK);
  EXPECT_EQ(EventsOf(level.get())->Unadvise(first_cookie), CONNECT_E_NOCONNECTION);
  ComPtr<IEnumConnections> connections;
  ASSERT_EQ(EventsOf(level.get())->EnumConnections(connections.Put()), S_OK);
  CONNECTDATA data[2];
  ULONG fetched = 0;
  EXPECT_EQ(connections->Next(2, data, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 1u);
  EXPECT_EQ(EventsOf(level.get())->Unadvise(second_cookie), S_OK);
}

TEST_F(ComClientTest, ThreadsHaveLogsOfTheirOwn) {
  const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  VARIANT_BOOL result = VARIANT_TRUE;
  manager->CreateDiffFile(Text(L"Z:\\fehlt.lst"), nullptr, nullptr, &result);
  LONG elsewhere = -1;
  HRESULT strange = S_OK;
  std::thread([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      const auto other = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
      ComPtr<IErrorCollection> errors;
      other->get_Errors(errors.Put());
      errors->get_Count(&elsewhere);
      strange = manager->ShowErrorProtocol();
    }
    CoUninitialize();
  }).join();
  EXPECT_EQ(elsewhere, 0);
  EXPECT_EQ(strange, RPC_E_WRONG_THREAD);
  ComPtr<IErrorCollection> errors;
  manager->get_Errors(errors.Put());
  LONG here = 0;
  errors->get_Count(&here);
  EXPECT_GT(here, 0);
}

TEST_F(ComClientTest, ArraysOfAnotherThreadAreRefused) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  ComPtr<IXArrayDB> foreign;
  std::thread([&] { foreign = component_.Create<IXArrayDB>(CLSID_XArrayDB); }).join();
  EXPECT_EQ(static_cast<std::uint32_t>(level->putref_ElementArray(foreign.get())), 0x800A000Du);
}

IBXConvertLLMgr* nested_manager = nullptr;
int nested_calls = 0;

LRESULT CALLBACK CallManagerAgain(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_USER) return DefWindowProcW(window, message, wparam, lparam);
  VARIANT_BOOL result = VARIANT_TRUE;
  EXPECT_EQ(nested_manager->CreateDiffFile(nullptr, nullptr, nullptr, &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
  ComPtr<IErrorCollection> errors;
  nested_manager->get_Errors(errors.Put());
  LONG before = -1;
  LONG after = -1;
  errors->get_Count(&before);
  EXPECT_EQ(static_cast<std::uint32_t>(errors->Clear()), 0x800A0005u);
  errors->get_Count(&after);
  EXPECT_EQ(before, after);
  ++nested_calls;
  return 0;
}

TEST_F(ComClientTest, CallFromAMessageHandlerDuringAnOperationDoesNothing) {
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = CallManagerAgain;
  window_class.lpszClassName = L"TessaryClientTest";
  RegisterClassW(&window_class);
  const HWND window = CreateWindowW(L"TessaryClientTest", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                    nullptr, nullptr);
  ASSERT_NE(window, nullptr);
  const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  nested_manager = manager.get();
  PostMessageW(window, WM_USER, 0, 0);
  Sleep(50);  // so that the first yield takes a turn
  const std::wstring samples = NativePath(TESSARY_SAMPLES) + L"\\hersteller\\";
  wchar_t folder[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  const std::wstring target =
      std::wstring(folder) + L"tessary" + std::to_wstring(GetCurrentProcessId());
  CreateDirectoryW(target.c_str(), nullptr);
  VARIANT_BOOL result = VARIANT_FALSE;
  manager->CreateDiffFile(Text((samples + L"version3\\Rechnung.lst").c_str()),
                          Text((samples + L"version4\\Rechnung.lst").c_str()), Text(target.c_str()),
                          &result);
  EXPECT_EQ(result, VARIANT_TRUE);
  EXPECT_EQ(nested_calls, 1);
  DeleteFileW((target + L"\\3_4Rechnung").c_str());
  RemoveDirectoryW(target.c_str());
  DestroyWindow(window);
}

// The bytes in use on all heaps of the process.
std::size_t BytesInUse() {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(64, heaps);
  std::size_t bytes = 0;
  for (DWORD at = 0; at < count; ++at) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heaps[at]);
    while (HeapWalk(heaps[at], &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    }
    HeapUnlock(heaps[at]);
  }
  return bytes;
}

TEST_F(ComClientTest, TenThousandRoundsDoNotGrow) {
  const auto round = [&](int number) {
    const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
    const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
    AddSection(level.get(), (L"[" + std::to_wstring(number) + L"]").c_str());
    ComPtr<IXArrayDB> array;
    level->get_ElementArray(array.Put());
    Variant cell;
    array->get_Value(1, 12, cell.Put());
    ComPtr<IErrorCollection> errors;
    manager->get_Errors(errors.Put());
  };
  for (int number = 0; number < 500; ++number) round(number);
  const std::size_t before = BytesInUse();
  for (int number = 0; number < 10000; ++number) round(number);
  EXPECT_LT(BytesInUse(), before + 0x4000);
}

TEST_F(ComClientTest, UnloadsWhenNothingIsHeld) {
  {
    const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
    AddSection(level.get(), L"[A]");
    VARIANT result{};
    EXPECT_EQ(Call(level.get(), L"LastElement", DISPATCH_PROPERTYGET, {}, &result), S_OK);
    EXPECT_EQ(component_.CanUnloadNow(), S_FALSE);
    VariantClear(&result);
  }
  EXPECT_EQ(component_.CanUnloadNow(), S_OK);
  component_.Unload();
  EXPECT_EQ(GetModuleHandleW(L"Tessary.dll"), nullptr);
}

// The objects that a manifest makes known for as long as this lives.
class ActivationByManifest {
 public:
  ActivationByManifest() {
    const std::wstring manifest = NativePath(TESSARY_MANIFEST);
    ACTCTXW context{};
    context.cbSize = sizeof(context);
    context.lpSource = manifest.c_str();
    context_ = CreateActCtxW(&context);
    active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
  }
  ~ActivationByManifest() {
    if (active_) DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
  }

  bool active() const { return active_; }

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

TEST_F(ComClientTest, ManifestActivatesWithoutRegistration) {
  const ActivationByManifest manifest;
  ASSERT_TRUE(manifest.active());
  // The identifier that belongs to a ProgID is one that holds within the context only.
  for (const wchar_t* prog_id : {L"Tessary.BXLevel7", L"Tessary.BXLevel7.1"}) {
    CLSID class_id = CLSID_NULL;
    ComPtr<IBXLevelBasis> level;
    ASSERT_EQ(CLSIDFromProgID(prog_id, &class_id), S_OK);
    EXPECT_EQ(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IBXLevelBasis,
                               level.PutVoid()),
              S_OK);
  }
  ComPtr<IBXConvertLLMgr> manager;
  ASSERT_EQ(CoCreateInstance(CLSID_BXConvertLLMgr, nullptr, CLSCTX_INPROC_SERVER,
                             IID_IBXConvertLLMgr, manager.PutVoid()),
            S_OK);
  LONG count = -1;
  EXPECT_EQ(manager->get_CountCorrectReports(&count), S_OK);
  EXPECT_EQ(count, 0);
}

TEST_F(ComClientTest, CallerInAnotherApartmentGetsAProxy) {
  const ActivationByManifest manifest;
  ASSERT_TRUE(manifest.active());
  LONG count = -1;
  HRESULT created = E_FAIL;
  std::thread([&] {
    const ActivationByManifest here;
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    {
      ComPtr<IBXConvertLLMgr> manager;
      created = CoCreateInstance(CLSID_BXConvertLLMgr, nullptr, CLSCTX_INPROC_SERVER,
                                 IID_IBXConvertLLMgr, manager.PutVoid());
      if (manager) manager->get_CountCorrectReports(&count);
    }
    CoUninitialize();
  }).join();
  EXPECT_EQ(created, S_OK);
  EXPECT_EQ(count, 0);
}

}  // namespace
}  // namespace tessary::com
