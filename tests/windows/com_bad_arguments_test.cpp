// Every member of the component with every kind of nonsense: an error, nothing created or changed,
// and nothing held on to.

#include "platform/path.h"
#include "platform/windows/wide_text.h"
#include "support/temporary_folder.h"
#include "windows/com_client.h"
#include "windows/report_folders.h"

namespace tessary::com {
namespace {

// Puts the process where nobody could see a window: none is shown, and every question counts as
// answered with No.
bool HideProcess() {
  const HWINSTA station = CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
  return station && SetProcessWindowStation(station);
}

// A text as callers hand it in; none for a null pointer.
struct Argument {
  std::string shown;
  bool is_null = false;
  std::wstring text = {};

  Bstr Get() const { return is_null ? Bstr() : Bstr(std::wstring_view(text)); }
};

class BadArgumentsTest : public ComClientTest {
 protected:
  BadArgumentsTest() : before_(FilesBelow(root_)) {
    static const bool is_hidden = HideProcess();
    EXPECT_TRUE(is_hidden);
  }

  Argument Below(const std::string& name) const { return Plain(root_ + "\\" + name); }
  static Argument Plain(const std::string& text) { return {text, false, WideFromUtf8(text)}; }

  // What names neither a file nor a folder.
  std::vector<Argument> Nonsense() const {
    std::vector<Argument> arguments = {
        {"null", true},
        Plain(""),
        Plain(" "),
        Plain("fehlt"),
        Plain("..\\..\\fehlt"),
        Plain("NUL"),
        Plain("COM1"),
        Plain("\\\\.\\NUL"),
        Plain("\\\\fehlt\\freigabe\\x"),
        Plain("\\\\?\\Q:\\fehlt"),
        Plain("Q:"),
        {"100,000 letters", false, std::wstring(100'000, L'x')},
        {"a null character", false, std::wstring(L"a\0b", 3)},
        {"half a character", false, L"\xD800"},
        Below("fehlt"),
        Below("fehlt\\x"),
        Below("NUL"),
        Below("COM1.lst"),
        Below("*"),
        Below("Berichte\\Bericht ?.lst"),
        Below("Berichte:strom"),
        Below("Berichte\\Bericht 1.lst:strom"),
        Below("Berichte\\Bericht 1.lst\\"),
        Below("Berichte\\Bericht 1.lst\\x"),
        Below(std::string(300, 'x')),
    };
    return arguments;
  }
  // The same, and a folder for a file or a file for a folder.
  std::vector<Argument> NoFiles() const {
    auto arguments = Nonsense();
    for (const char* name : {"Berichte", "Berichte\\", "Berichte\\.."})
      arguments.push_back(Below(name));
    return arguments;
  }
  std::vector<Argument> NoFolders() const {
    auto arguments = Nonsense();
    arguments.push_back(Below("Berichte\\Bericht 1.lst"));
    return arguments;
  }

  // An operation that has to answer False without any change.
  template <class Operation>
  void ExpectRefused(const Argument& argument, Operation operation) {
    SCOPED_TRACE(argument.shown.substr(0, 100));
    VARIANT_BOOL result = VARIANT_TRUE;
    const Bstr text = argument.Get();
    EXPECT_EQ(operation(text.get(), &result), S_OK);
    EXPECT_EQ(result, VARIANT_FALSE);
    EXPECT_EQ(FilesBelow(root_), before_);
  }

  win32::ReportFolders folders_{1};
  const std::string root_ = ParentFolderOf(folders_.reports());
  const Bstr old_report_{std::string_view(folders_ / "alt\\Rechnung.lst")};
  const Bstr new_report_{std::string_view(folders_ / "neu\\Rechnung.lst")};
  const Bstr old_folder_{std::string_view(folders_ / "alt")};
  const Bstr new_folder_{std::string_view(folders_ / "neu")};
  const Bstr differences_{std::string_view(folders_ / "diff")};
  const Bstr difference_{std::string_view(folders_ / "diff\\3_4Rechnung")};
  const Bstr report_{std::string_view(folders_ / "Berichte\\Bericht 1.lst")};
  const Bstr reports_{std::string_view(folders_ / "Berichte")};
  ComPtr<IBXConvertLLMgr> manager_ = component_.Create<IBXConvertLLMgr>(CLSID_BXConvertLLMgr);
  std::map<std::string, std::string> before_;
};

TEST_F(BadArgumentsTest, OfOneComparison) {
  for (const Argument& argument : NoFiles()) {
    ExpectRefused(argument, [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->CreateDiffFile(bad, new_report_.get(), old_folder_.get(), result);
    });
    ExpectRefused(argument, [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->CreateDiffFile(old_report_.get(), bad, old_folder_.get(), result);
    });
  }
  for (const Argument& argument : NoFolders()) {
    ExpectRefused(argument, [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->CreateDiffFile(old_report_.get(), new_report_.get(), bad, result);
    });
  }
}

TEST_F(BadArgumentsTest, OfAFoldersComparison) {
  for (const Argument& argument : NoFolders()) {
    ExpectRefused(argument, [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->CreateDiffFiles(bad, new_folder_.get(), reports_.get(), result);
    });
    ExpectRefused(argument, [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->CreateDiffFiles(old_folder_.get(), bad, reports_.get(), result);
    });
    ExpectRefused(argument, [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->CreateDiffFiles(old_folder_.get(), new_folder_.get(), bad, result);
    });
  }
}

TEST_F(BadArgumentsTest, OfOneConversion) {
  for (const Argument& argument : NoFiles()) {
    ExpectRefused(argument, [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->ConvertReport(bad, difference_.get(), nullptr, result);
    });
  }
}

TEST_F(BadArgumentsTest, OfAFoldersConversion) {
  for (const Argument& argument : NoFolders()) {
    ExpectRefused(argument, [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->ConvertReports(differences_.get(), bad, reports_.get(), VARIANT{}, result);
    });
    ExpectRefused(argument, [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->ConvertReports(bad, reports_.get(), old_folder_.get(), VARIANT{}, result);
    });
  }
}

// The report is saved before the difference file is looked at; it stays as it is.
TEST_F(BadArgumentsTest, AsDifferenceFileLeaveTheReportAlone) {
  const Bstr backup_folder{std::string_view(root_ + "\\Sicherung")};
  const std::string report = GetFile(folders_.report(1));
  for (const Argument& argument : NoFiles()) {
    SCOPED_TRACE(argument.shown.substr(0, 100));
    VARIANT_BOOL result = VARIANT_TRUE;
    const Bstr bad = argument.Get();
    EXPECT_EQ(manager_->ConvertReport(report_.get(), bad.get(), backup_folder.get(), &result),
              S_OK);
    EXPECT_EQ(result, VARIANT_FALSE);
    EXPECT_EQ(GetFile(folders_.report(1)), report);
  }
}

TEST_F(BadArgumentsTest, AsBackupFolderLeaveTheReportAlone) {
  for (const char* name : {"Berichte\\Bericht 1.lst", "fehlt\\Sicherung", "Berichte", "Berichte\\",
                           "Berichte\\.", "BERICHTE", "*", "Berichte:strom", "x\\NUL"}) {
    ExpectRefused(Below(name), [&](BSTR bad, VARIANT_BOOL* result) {
      return manager_->ConvertReport(report_.get(), difference_.get(), bad, result);
    });
  }
}

TEST_F(BadArgumentsTest, ReferencesThatLeadOutOfTheFolderAreRefused) {
  for (const char* reference : {"..\\x", "C:\\x", "\\x", "/x", "a:b", "..", "x\ty"}) {
    const auto write = [&](const std::string& path, int version) {
      PutFile(path, "[UserSection]\r\nVersion=" + std::to_string(version) +
                        "\r\nReferenzbeleg=" + reference + "\r\n");
    };
    write(folders_ / "alt\\Rechnung.lst", 3);
    write(folders_ / "neu\\Rechnung.lst", 4);
    before_ = FilesBelow(root_);
    ExpectRefused(Plain(reference), [&](BSTR, VARIANT_BOOL* result) {
      return manager_->CreateDiffFile(old_report_.get(), new_report_.get(), reports_.get(), result);
    });
  }
}

TEST_F(BadArgumentsTest, LateBoundCallsOfTheWrongTypeOrNumber) {
  const struct {
    const char* what;
    std::vector<VARIANT> arguments;
    HRESULT result;
  } rows[] = {
      {"none", {}, DISP_E_BADPARAMCOUNT},
      {"too few", {LongValue(1)}, DISP_E_BADPARAMCOUNT},
      {"too many", std::vector<VARIANT>(7, LongValue(1)), DISP_E_BADPARAMCOUNT},
      {"an object",
       {Variant::Object(ComPtr<IDispatch>::Query(manager_.get()).Detach()).Detach(), LongValue(1),
        LongValue(1)},
       DISP_E_TYPEMISMATCH},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    VARIANT answer{};
    for (const wchar_t* member : {L"CreateDiffFile", L"CreateDiffFiles", L"ConvertReport"})
      EXPECT_EQ(Call(manager_.get(), member, DISPATCH_METHOD, row.arguments, &answer), row.result);
    EXPECT_EQ(V_VT(&answer), VT_EMPTY);
    for (VARIANT argument : row.arguments) VariantClear(&argument);
  }
  EXPECT_EQ(FilesBelow(root_), before_);
}

TEST_F(BadArgumentsTest, OfThoseThatHoldErrors) {
  ComPtr<IErrorCollection> errors;
  ASSERT_EQ(manager_->get_Errors(errors.Put()), S_OK);
  ASSERT_EQ(errors->Clear(), S_OK);
  for (const LONG index : {0L, -1L, 1L, LONG{INT32_MAX}, LONG{INT32_MIN}}) {
    ComPtr<IErrorEntry> entry;
    EXPECT_TRUE(FAILED(errors->get_Item(index, entry.Put()))) << index;
    EXPECT_FALSE(entry);
  }
  EXPECT_EQ(errors->get_Item(1, nullptr), E_POINTER);
  EXPECT_EQ(errors->get_Count(nullptr), E_POINTER);
  EXPECT_EQ(errors->get__NewEnum(nullptr), E_POINTER);
  VARIANT_BOOL result = VARIANT_TRUE;
  const Bstr missing{std::string_view("Q:\\fehlt.lst")};
  manager_->ConvertReport(missing.get(), nullptr, nullptr, &result);
  ComPtr<IErrorEntry> entry;
  ASSERT_EQ(errors->get_Item(1, entry.Put()), S_OK);
  EXPECT_EQ(entry->get_Kind(nullptr), E_POINTER);
  EXPECT_EQ(entry->get_Number(nullptr), E_POINTER);
  EXPECT_EQ(entry->get_Source(nullptr), E_POINTER);
  EXPECT_EQ(entry->get_Text(nullptr), E_POINTER);
}

TEST_F(BadArgumentsTest, OfArrays) {
  const auto array = component_.Create<IXArrayDB>(CLSID_XArrayDB);
  ASSERT_EQ(array->ReDim(1, 2, 0, 3), S_OK);
  LONG number = 0;
  Variant cell;
  const HRESULT results[] = {
      array->get_Value(0, 0, cell.Put()),
      array->get_Value(1, 4, cell.Put()),
      array->get_Value(INT32_MIN, INT32_MAX, cell.Put()),
      array->put_Value(3, 0, LongValue(1)),
      array->put_Value(1, -1, LongValue(1)),
      array->putref_Value(1, 99, LongValue(1)),
      array->AppendRows(-1),
      array->AppendRows(INT32_MAX),
      array->InsertRows(0, 1),
      array->InsertRows(1, -1),
      array->InsertRows(99, 1),
      array->DeleteRows(0, 1),
      array->DeleteRows(1, INT32_MAX),
      array->DeleteRows(2, -1),
      array->get_LowerBound(0, &number),
      array->get_UpperBound(3, &number),
      array->get_Count(-1, &number),
      array->Find(1, 9, LongValue(1), 0, &number),
      array->QuickSort(1, 2, 9, 0, 7),
      array->get_LowerBound(1, nullptr),
      array->get_UpperBound(1, nullptr),
      array->get_Count(1, nullptr),
      array->Find(1, 1, LongValue(1), 0, nullptr),
  };
  for (std::size_t i = 0; i < std::size(results); ++i) EXPECT_TRUE(FAILED(results[i])) << i;
  EXPECT_EQ(Rows(array), 2);
}

TEST_F(BadArgumentsTest, OfReportFiles) {
  const auto report = component_.Create<IBXReportFile>(CLSID_BXReportFile);
  EXPECT_EQ(report->get_ReportFile(nullptr), E_POINTER);
  EXPECT_EQ(report->GetNextLine(nullptr), E_POINTER);
  const Bstr section{std::wstring_view(L"[A]")};
  EXPECT_EQ(report->AddLine(section.get()), S_OK);
  for (const std::wstring& text :
       {std::wstring(), std::wstring(100'000, L'['), std::wstring(L"a\0b", 3),
        std::wstring(L"\xD800"), std::wstring(L"[A]\r\n[B]"), std::wstring(1000, L'\t')}) {
    const Bstr line{std::wstring_view(text)};
    EXPECT_EQ(report->AddLine(line.get()), S_OK) << "any text is a line";
  }
  EXPECT_EQ(report->AddLine(nullptr), S_OK) << "no text is an empty one";
}

}  // namespace
}  // namespace tessary::com
