#include "windows/com_client.h"

#include <thread>

namespace tessary::com {
namespace {

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
  const auto diff =
      Parsed({L"N(Key=[B]:Typ=:PrevName=[A]:PrevKey=[A]:PrevTyp=:"
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
  may_stay_held_ = true;  // by the apartment that the system makes for the object
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
