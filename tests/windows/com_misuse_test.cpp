#include <thread>

#include "windows/com_client.h"

namespace tessary::com {
namespace {

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
  VariantClear(&wrong);
}

TEST_F(ComClientTest, ArraysOfAnotherThreadAreRefused) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  ComPtr<IXArrayDB> foreign;
  std::thread([&] { foreign = component_.Create<IXArrayDB>(CLSID_XArrayDB); }).join();
  EXPECT_EQ(level->putref_ElementArray(foreign.get()), DISP_E_TYPEMISMATCH);
}

std::uint32_t Unsigned(HRESULT result) { return static_cast<std::uint32_t>(result); }

// An object of the client's own, of no kind that the component knows.
class Stranger final : public IDispatch {
 public:
  explicit Stranger(std::function<void()> on_question = {})
      : on_question_(std::move(on_question)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (on_question_) on_question_();
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    return E_NOTIMPL;
  }

 private:
  std::function<void()> on_question_;
};

HRESULT AddChild(IBXLevelBasis* level, IBXLevelBasis* child) {
  const Bstr name{std::wstring_view(L"[A]")};
  return level->Add(name.get(), bxsUnknown, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                    nullptr, nullptr, nullptr, nullptr, child, bxltSection);
}

TEST_F(ComClientTest, StrangersAreATypeMismatchForEarlyBoundCallersToo) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  const auto report = component_.Create<IBXReportFile>(CLSID_BXReportFile);
  Stranger stranger;
  auto* array = reinterpret_cast<IXArrayDB*>(&stranger);
  EXPECT_EQ(level->putref_ElementArray(array), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(level->Compare(&array, &array), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(level->PrepareWriting(&array, 0), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(level->Convert(array, array), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(report->putref_ReportFile(array), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(AddChild(level.get(), reinterpret_cast<IBXLevelBasis*>(&stranger)),
            DISP_E_TYPEMISMATCH);
}

class NestingTest : public ComClientTest {
 protected:
  NestingTest() {
    AddChild(parent_.get(), child_.get());
    AddChild(child_.get(), grandchild_.get());
    parent_->get_ElementArray(array_.Put());
    child_->get_ElementArray(childs_array_.Put());
  }

  ComPtr<IBXLevelBasis> parent_ = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  ComPtr<IBXLevelBasis> child_ = component_.Create<IBXLevelBasis>(CLSID_BXLevel1);
  ComPtr<IBXLevelBasis> grandchild_ = component_.Create<IBXLevelBasis>(CLSID_BXLevel2);
  ComPtr<IXArrayDB> array_;
  ComPtr<IXArrayDB> childs_array_;
};

TEST_F(NestingTest, NoLevelGetsBelowItself) {
  constexpr std::uint32_t kRefused = 0x800A0005u;
  EXPECT_EQ(Unsigned(AddChild(grandchild_.get(), grandchild_.get())), kRefused);
  EXPECT_EQ(Unsigned(AddChild(grandchild_.get(), child_.get())), kRefused);
  EXPECT_EQ(Unsigned(AddChild(grandchild_.get(), parent_.get())), kRefused);
  EXPECT_EQ(Unsigned(grandchild_->putref_ElementArray(array_.get())), kRefused);
  EXPECT_EQ(Unsigned(child_->putref_ElementArray(array_.get())), kRefused);
  const Variant level = Variant::Object(ComPtr<IDispatch>::Query(parent_.get()).Detach());
  EXPECT_EQ(Unsigned(childs_array_->putref_Value(1, 12, level.get())), kRefused);
  ComPtr<IXArrayDB> lines;
  EXPECT_EQ(parent_->PrepareWriting(lines.Put(), 0), S_OK);
  EXPECT_EQ(Rows(lines), 2);
}

// What is converted, compared or checked becomes the level's own, so it must not hold the level.
TEST_F(NestingTest, NoLevelTakesOverItself) {
  constexpr std::uint32_t kRefused = 0x800A0005u;
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  const auto array = component_.Create<IXArrayDB>(CLSID_XArrayDB);
  const auto empty = component_.Create<IXArrayDB>(CLSID_XArrayDB);
  array->ReDim(1, 1, 0, 12);
  array->put_Value(1, 0, LongValue(bxsUpdate));
  array->put_Value(1, 1, TextValue(L"[A]"));
  const Variant itself = Variant::Object(ComPtr<IDispatch>::Query(level.get()).Detach());
  array->putref_Value(1, 12, itself.get());
  IXArrayDB* one = array.get();
  IXArrayDB* none = empty.get();
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(Unsigned(level->Convert(array.get(), array.get())), kRefused);
  EXPECT_EQ(Unsigned(level->Convert(empty.get(), array.get())), kRefused);
  EXPECT_EQ(Unsigned(level->Compare(&none, &one)), kRefused);
  EXPECT_EQ(Unsigned(level->CompareElements(&one, &one, nullptr)), kRefused);
  EXPECT_EQ(Unsigned(level->CheckMissingElements(&one, &none, bxsNew)), kRefused);
  EXPECT_EQ(Unsigned(level->CheckForAddingAllElements(&none, &one, &done)), kRefused);
  EXPECT_EQ(Rows(array), 1);
  array->DeleteRows(1, 1);
}

TEST_F(NestingTest, DeepLevelsAreLetGoOfWithoutDeepCalls) {
  auto level = grandchild_;
  for (int depth = 0; depth < 100'000; ++depth) {
    ASSERT_EQ(AddSection(level.get(), L"[A]"), S_OK);
    ComPtr<IBXLevelBasis> next;
    ASSERT_EQ(level->get_LastElement(next.Put()), S_OK);
    if (!next) next = component_.Create<IBXLevelBasis>(CLSID_BXLevel1);
    level = next;
  }
  level = grandchild_ = child_ = parent_ = {};
  childs_array_ = array_ = {};
}

TEST_F(NestingTest, OneLevelMayStandAtSeveralPlaces) {
  EXPECT_EQ(AddChild(parent_.get(), child_.get()), S_OK);
  EXPECT_EQ(AddChild(parent_.get(), grandchild_.get()), S_OK);
  ComPtr<IXArrayDB> lines;
  EXPECT_EQ(parent_->PrepareWriting(lines.Put(), 0), S_OK);
  EXPECT_EQ(Rows(lines), 5);
}

TEST_F(NestingTest, WhatIsTooDeepIsRefusedBeforeTheStackEnds) {
  std::vector<ComPtr<IBXLevelBasis>> levels{grandchild_};
  for (int depth = 0; depth < 300; ++depth) {
    levels.push_back(component_.Create<IBXLevelBasis>(CLSID_BXLevel9));
    ASSERT_EQ(AddChild(levels[levels.size() - 2].get(), levels.back().get()), S_OK);
  }
  constexpr std::uint32_t kOutOfStackSpace = 0x800A001Cu;
  ComPtr<IXArrayDB> lines;
  EXPECT_EQ(Unsigned(parent_->PrepareWriting(lines.Put(), 0)), kOutOfStackSpace);
  EXPECT_EQ(LastError(), "Tessary.BXLevel0: Nicht genügend Stapelspeicher");
  const auto report = component_.Create<IBXReportFile>(CLSID_BXReportFile);
  ASSERT_EQ(report->putref_ReportFile(array_.get()), S_OK);
  BSTR line = nullptr;
  EXPECT_EQ(Unsigned(report->GetFirstLine(&line)), kOutOfStackSpace);
  EXPECT_EQ(levels[200]->PrepareWriting(lines.Put(), 0), S_OK);
}

// A level that has found one value: "[Object]", level 0, column bxeaTyp, "Kopf".
ComPtr<IBXLevelBasis> LevelWithFoundValue(Component& component) {
  auto level = component.Create<IBXLevelBasis>(CLSID_BXLevel1);
  const Bstr line{std::wstring_view(L"ObjectName=Kopf")};
  level->Add(line.get(), bxsUnknown, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
             nullptr, nullptr, nullptr, nullptr, bxltProperty);
  return level;
}

HRESULT GetFoundFieldValue(IBXLevelBasis* level, VARIANT owner, VARIANT field, VARIANT* found) {
  VARIANT ignored[2]{};
  const HRESULT called = Call(
      level, L"GetFoundFieldValue", DISPATCH_METHOD,
      {owner, ReferenceTo(VT_VARIANT, &ignored[0]), field, ReferenceTo(VT_VARIANT, &ignored[1])},
      found);
  for (VARIANT& value : ignored) VariantClear(&value);
  return called;
}

TEST_F(ComClientTest, NumbersAreWrittenBackToVariablesOfEveryNumberType) {
  for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_INT, VT_UINT, VT_I8,
                             VT_UI8, VT_R4, VT_R8, VT_CY}) {
    std::int64_t variable[2] = {0, 0x5A5A5A5A};
    VARIANT owner{};
    VARIANT found{};
    EXPECT_EQ(
        GetFoundFieldValue(LevelWithFoundValue(component_).get(), ReferenceTo(VT_VARIANT, &owner),
                           ReferenceTo(type, variable), &found),
        S_OK)
        << type;
    EXPECT_EQ(V_BOOL(&found), VARIANT_TRUE);
    const Variant stored = Variant::Copy(ReferenceTo(type, variable));
    EXPECT_EQ(V_I4(&stored.As(VT_I4).get()), bxeaTyp) << type;
    EXPECT_EQ(variable[1], 0x5A5A5A5A);
    VariantClear(&owner);
  }
}

TEST_F(ComClientTest, VariablesThatCannotTakeAResultAreRefusedBeforeTheCall) {
  const auto level = LevelWithFoundValue(component_);
  BSTR text = nullptr;
  LONG number = 0;
  IDispatch* object = nullptr;
  VARIANT variant{};
  VARIANT found{};
  const VARIANT good_owner = ReferenceTo(VT_VARIANT, &variant);
  const VARIANT good_field = ReferenceTo(VT_I4, &number);
  const struct {
    VARIANT owner, field;
    HRESULT result;
  } cases[] = {
      {ReferenceTo(VT_I4, &number), good_field, DISP_E_TYPEMISMATCH},
      {good_owner, ReferenceTo(VT_BSTR, &text), DISP_E_TYPEMISMATCH},
      {good_owner, ReferenceTo(VT_DISPATCH, &object), DISP_E_TYPEMISMATCH},
      {good_owner, ReferenceTo(VT_ARRAY | VT_I4, &object), DISP_E_TYPEMISMATCH},
      {ReferenceTo(VT_VARIANT, nullptr), good_field, E_POINTER},
      {ReferenceTo(VT_BSTR, nullptr), good_field, E_POINTER},
      {good_owner, ReferenceTo(VT_I4, nullptr), E_POINTER},
  };
  for (const auto& wrong : cases) {
    EXPECT_EQ(GetFoundFieldValue(level.get(), wrong.owner, wrong.field, &found), wrong.result);
    EXPECT_EQ(V_VT(&found), VT_EMPTY);
  }
  // A found value is handed out once, and still there.
  EXPECT_EQ(GetFoundFieldValue(level.get(), good_owner, good_field, &found), S_OK);
  EXPECT_EQ(V_BOOL(&found), VARIANT_TRUE);
  VariantClear(&variant);
}

TEST_F(ComClientTest, ReferencesAreFollowedToTheVariableAtTheirEnd) {
  LONG number = 0;
  VARIANT inner = ReferenceTo(VT_I4, &number);
  VARIANT outer = ReferenceTo(VT_VARIANT, &inner);
  VARIANT owner{};
  VARIANT found{};
  EXPECT_EQ(
      GetFoundFieldValue(LevelWithFoundValue(component_).get(), ReferenceTo(VT_VARIANT, &owner),
                         ReferenceTo(VT_VARIANT, &outer), &found),
      S_OK);
  EXPECT_EQ(number, bxeaTyp);
  EXPECT_EQ(V_VT(&inner), VT_BYREF | VT_I4);
  VARIANT circle{};
  circle = ReferenceTo(VT_VARIANT, &circle);
  EXPECT_EQ(GetFoundFieldValue(LevelWithFoundValue(component_).get(),
                               ReferenceTo(VT_VARIANT, &owner), circle, &found),
            DISP_E_TYPEMISMATCH);
  VariantClear(&owner);
}

TEST_F(ComClientTest, BoundsAtTheEndOfTheNumbersAreRefused) {
  const auto array = component_.Create<IXArrayDB>(CLSID_XArrayDB);
  const struct {
    LONG lower_row, upper_row, lower_column, upper_column;
    std::uint32_t result;
  } cases[] = {
      {INT32_MAX, INT32_MAX, 0, 0, 0x800A0006u}, {0, 0, INT32_MAX, INT32_MAX, 0x800A0006u},
      {INT32_MIN, INT32_MIN, 0, 0, 0x800A0006u}, {INT32_MIN, INT32_MAX, 0, 0, 0x800A0007u},
      {0, 0, INT32_MIN, INT32_MAX, 0x800A0007u}, {5, 3, 0, 0, 0x800A0009u},
      {0, 1 << 20, 0, 1 << 20, 0x800A0007u},     {INT32_MAX - 1, INT32_MAX - 1, 0, 0, 0},
      {0, 0, INT32_MIN, INT32_MIN, 0},           {INT32_MIN + 1, INT32_MIN + 1, 0, 0, 0},
  };
  for (const auto& bounds : cases) {
    EXPECT_EQ(Unsigned(array->ReDim(bounds.lower_row, bounds.upper_row, bounds.lower_column,
                                    bounds.upper_column)),
              bounds.result)
        << bounds.lower_row << " " << bounds.lower_column;
    if (bounds.result != 0) continue;
    LONG found = 0;
    EXPECT_EQ(array->Find(bounds.lower_row, bounds.lower_column, TextValue(L"fehlt"), 1, &found),
              S_OK);
    EXPECT_EQ(found, bounds.lower_row - 1);
  }
}

TEST_F(ComClientTest, ObjectsThatChangeTheArrayTheyStandInDoNoHarm) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  const auto array = component_.Create<IXArrayDB>(CLSID_XArrayDB);
  ASSERT_EQ(array->ReDim(1, 3, 0, 12), S_OK);
  for (LONG row = 1; row <= 3; ++row) array->put_Value(row, 0, LongValue(3));
  bool asked = false;
  Stranger stranger([&] {
    if (asked) return;
    asked = true;
    EXPECT_EQ(array->ReDim(1, 0, 0, 12), S_OK);
  });
  const Variant object = Variant::Object(&stranger);
  ASSERT_EQ(array->putref_Value(2, 12, object.get()), S_OK);
  EXPECT_TRUE(FAILED(level->putref_ElementArray(array.get())));
  EXPECT_TRUE(asked);
  EXPECT_EQ(Rows(array), 0);
  EXPECT_EQ(level->putref_ElementArray(array.get()), S_OK);
}

TEST_F(ComClientTest, SinksMayEndTheConnectionAndLetGoOfTheLevel) {
  const auto report = Parsed({L"[A]", L"X=1"});
  const auto diff =
      Parsed({L"N(Key=[B]:Typ=:PrevName=[A]:PrevKey=[A]:PrevTyp=:"
              L"NextName=:NextKey=:NextTyp=:PosNr=);[B]"});
  auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  Sink sink;
  DWORD cookie = 0;
  ASSERT_EQ(EventsOf(level.get())->Advise(&sink, &cookie), S_OK);
  IBXLevelBasis* called = level.get();
  sink.on_event = [&] {
    EventsOf(level.get())->Unadvise(cookie);
    sink.last_level = {};
    level = {};
  };
  EXPECT_EQ(called->Convert(report.get(), diff.get()), S_OK);
  EXPECT_EQ(sink.heard.size(), 1u);
  EXPECT_EQ(Rows(report), 2);
}

TEST_F(ComClientTest, SinksMayEmptyTheArrays) {
  const auto report = Parsed({L"[A]", L"X=1"});
  const auto diff =
      Parsed({L"N(Key=[B]:Typ=:PrevName=[A]:PrevKey=[A]:PrevTyp=:"
              L"NextName=:NextKey=:NextTyp=:PosNr=);[B]"});
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  Sink sink;
  DWORD cookie = 0;
  ASSERT_EQ(EventsOf(level.get())->Advise(&sink, &cookie), S_OK);
  sink.on_event = [&] {
    report->DeleteRows(1, 1);
    diff->DeleteRows(1, 1);
  };
  level->Convert(report.get(), diff.get());
  EXPECT_EQ(sink.heard.size(), 1u);
  EXPECT_EQ(Rows(diff), 0);
  EventsOf(level.get())->Unadvise(cookie);
}

TEST_F(ComClientTest, ConnectionPointsBelongToTheirThread) {
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  const auto events = EventsOf(level.get());
  Sink sink;
  DWORD cookie = 0;
  HRESULT advised = S_OK;
  HRESULT unadvised = S_OK;
  std::thread([&] {
    advised = events->Advise(&sink, &cookie);
    unadvised = events->Unadvise(1);
  }).join();
  EXPECT_EQ(advised, RPC_E_WRONG_THREAD);
  EXPECT_EQ(unadvised, RPC_E_WRONG_THREAD);
}

}  // namespace
}  // namespace tessary::com
