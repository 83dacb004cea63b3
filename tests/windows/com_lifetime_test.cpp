#include <string>

#include "windows/com_client.h"

namespace tessary::com {
namespace {

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

// Every store brings texts of its own.
TEST_F(ComClientTest, MemoryDoesNotGrowWhileAManagerAndItsErrorsAreHeld) {
  const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  ComPtr<IErrorCollection> errors;
  manager->get_Errors(errors.Put());
  const auto own_array = component_.Create<IXArrayDB>(CLSID_XArrayDB);
  const auto round = [&](int number) {
    const auto report = component_.Create<IBXReportFile>(CLSID_BXReportFile);
    for (int line = 0; line < 100; ++line) {
      const Bstr text(L"Wert" + std::to_wstring(line) + L"=" + std::to_wstring(number));
      report->AddLine(text.get());
    }
  };
  for (int number = 0; number < 50; ++number) round(number);
  const std::size_t before = BytesInUse();
  for (int number = 50; number < 550; ++number) round(number);
  EXPECT_LT(BytesInUse(), before + 0x4000);
}

TEST_F(ComClientTest, AnElementArrayKeepsItsTexts) {
  const auto array = Parsed({L"[A]", L"X=1"});
  for (int number = 0; number < 10; ++number) {
    const auto other = Parsed({L"[B]", L"Y=2"});
    EXPECT_EQ(Rows(other), 1);
  }
  Variant cell;
  ASSERT_EQ(array->get_Value(1, 1, cell.Put()), S_OK);
  EXPECT_EQ(ToUtf8(V_BSTR(&cell.get())), "[A]");
  const auto level = component_.Create<IBXLevelBasis>(CLSID_BXLevel0);
  EXPECT_EQ(level->putref_ElementArray(array.get()), S_OK);
}

TEST_F(ComClientTest, LockedServersStayLoaded) {
  ComPtr<IClassFactory> factory = component_.Factory(CLSID_BXLevel0);
  ASSERT_EQ(factory->LockServer(TRUE), S_OK);
  factory = {};
  EXPECT_EQ(component_.CanUnloadNow(), S_FALSE);
  factory = component_.Factory(CLSID_BXLevel0);
  ASSERT_EQ(factory->LockServer(FALSE), S_OK);
  EXPECT_EQ(component_.CanUnloadNow(), S_FALSE);
  factory = {};
  EXPECT_EQ(component_.CanUnloadNow(), S_OK);
}

TEST_F(ComClientTest, ClassFactoriesTellWhoFails) {
  const auto factory = component_.Factory(CLSID_BXLevel0);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(LastError(), "Tessary.BXLevel0: Ungültiger Zeiger");
  const auto outer = component_.Create<IXArrayDB>(CLSID_XArrayDB);
  void* object = outer.get();
  EXPECT_EQ(factory->CreateInstance(outer.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(object, nullptr);
}

}  // namespace
}  // namespace tessary::com
