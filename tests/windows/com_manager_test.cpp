#include <thread>

#include "windows/com_client.h"
#include "windows/report_folders.h"

namespace tessary::com {
namespace {

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

IBXConvertLLMgr* nested_manager = nullptr;
int nested_calls = 0;

LRESULT CALLBACK CallManagerAgain(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_USER && message != WM_TIMER)
    return DefWindowProcW(window, message, wparam, lparam);
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

HWND CreateNestingWindow() {
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = CallManagerAgain;
  window_class.lpszClassName = L"TessaryClientTest";
  RegisterClassW(&window_class);
  return CreateWindowW(L"TessaryClientTest", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                       nullptr);
}

TEST_F(ComClientTest, CallFromAMessageHandlerDuringAnOperationDoesNothing) {
  const HWND window = CreateNestingWindow();
  ASSERT_NE(window, nullptr);
  const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  nested_manager = manager.get();
  nested_calls = 0;
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

// The folders of a conversion and their paths for the component.
struct Folders : win32::ReportFolders {
  using ReportFolders::ReportFolders;

  static Bstr Path(const std::string& path) { return Bstr(std::string_view(path)); }
  Bstr diff = Path(differences());
  Bstr reports_folder = Path(reports());
  bool IsConverted(int number) const {
    return GetFile(report(number)).find("Copies=2") != std::string::npos;
  }
};

bool ConvertReports(const ComPtr<IBXConvertLLMgr>& manager, const Folders& folders, VARIANT omit,
                    HRESULT expected = S_OK) {
  VARIANT_BOOL result = VARIANT_FALSE;
  EXPECT_EQ(manager->ConvertReports(folders.diff.get(), folders.reports_folder.get(), nullptr, omit,
                                    &result),
            expected);
  return result == VARIANT_TRUE;
}

// Knows one key and raises an error for every other, and has no Exists, as Collection of Visual
// Basic does. Item is its default member, or a member by name alone.
class CollectionLike final : public IDispatch {
 public:
  CollectionLike(std::wstring key, bool has_default)
      : key_(std::move(key)), default_(has_default) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* member) override {
    if (_wcsicmp(names[0], L"Item") != 0) return DISP_E_UNKNOWNNAME;
    *member = Item();
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result,
                      EXCEPINFO* exception, UINT*) override {
    if (member != Item()) return DISP_E_MEMBERNOTFOUND;
    if (_wcsicmp(V_BSTR(&arguments->rgvarg[0]), key_.c_str()) != 0) {
      if (exception) exception->scode = static_cast<SCODE>(0x800A0005u);
      return DISP_E_EXCEPTION;
    }
    if (result) *result = TextValue(L"ja");
    return S_OK;
  }

 private:
  DISPID Item() const { return default_ ? DISPID_VALUE : 7; }

  const std::wstring key_;
  const bool default_;
};

TEST_F(ComClientTest, ReportsAreLeftOutByACollectionThatRaisesErrorsForMissingKeys) {
  for (const bool has_default : {true, false}) {
    const Folders folders(3);
    const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
    CollectionLike omit(L"bericht 2.LST", has_default);
    EXPECT_TRUE(ConvertReports(manager, folders, Variant::Object(&omit).get()));
    EXPECT_TRUE(folders.IsConverted(1));
    EXPECT_FALSE(folders.IsConverted(2));
    EXPECT_TRUE(folders.IsConverted(3));
  }
}

TEST_F(ComClientTest, WhatIsNoCollectionFailsTheCallAndChangesNothing) {
  const Folders folders(1);
  const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  EXPECT_FALSE(ConvertReports(manager, folders, LongValue(5), DISP_E_TYPEMISMATCH));
  EXPECT_FALSE(folders.IsConverted(1));
}

TEST_F(ComClientTest, CallDuringTheConversionOfAFolderDoesNothing) {
  const Folders folders(60);
  const HWND window = CreateNestingWindow();
  const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  nested_manager = manager.get();
  nested_calls = 0;
  SetTimer(window, 1, 10, nullptr);
  EXPECT_TRUE(ConvertReports(manager, folders, Variant().get()));
  KillTimer(window, 1);
  EXPECT_GT(nested_calls, 1);
  LONG successes = 0;
  manager->get_CountCorrectReports(&successes);
  EXPECT_EQ(successes, 60);
  DestroyWindow(window);
}

// Each thread converts its own folder and fails once more often than the one before it.
TEST_F(ComClientTest, ManyThreadsAtOnceKeepTheirLogsApart) {
  constexpr int kThreads = 24;
  struct Seen {
    LONG successes = -1;
    LONG errors = -1;
  };
  std::vector<Seen> seen(kThreads);
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
      {
        const Folders folders(number % 4 + 1);
        const auto manager = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
        ConvertReports(manager, folders, Variant().get());
        for (int fails = 0; fails < number % 3; ++fails) {
          VARIANT_BOOL result = VARIANT_TRUE;
          const Bstr missing{std::wstring_view(L"Z:\\fehlt.lst")};
          manager->ConvertReport(missing.get(), missing.get(), nullptr, &result);
        }
        ComPtr<IErrorCollection> errors;
        manager->get_Errors(errors.Put());
        errors->get_Count(&seen[static_cast<std::size_t>(number)].errors);
        manager->get_CountCorrectReports(&seen[static_cast<std::size_t>(number)].successes);
      }
      CoUninitialize();
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int number = 0; number < kThreads; ++number) {
    EXPECT_EQ(seen[static_cast<std::size_t>(number)].successes, number % 4 + 1) << number;
    EXPECT_EQ(seen[static_cast<std::size_t>(number)].errors > 0, number % 3 > 0) << number;
  }
}

}  // namespace
}  // namespace tessary::com
