#include "com/convert_ll_mgr_face.h"

#include "com/error_collection_face.h"
#include "com/omit_collection.h"
#include "com/text.h"
#include "platform/path.h"
#include "platform/windows/wide_text.h"

namespace tessary::com {
namespace {

const ClassFacts kFacts{CLSID_BXConvertLLMgr, IID_IBXConvertLLMgr, nullptr,
                        L"Tessary.BXConvertLLMgr"};

// Marks the thread as busy with an operation.
class Operating {
 public:
  explicit Operating(ThreadState& thread) : thread_(thread) { thread_.set_operating(true); }
  ~Operating() { thread_.set_operating(false); }
  Operating(const Operating&) = delete;
  Operating& operator=(const Operating&) = delete;

 private:
  ThreadState& thread_;
};

}  // namespace

ConvertLLMgrFace::ConvertLLMgrFace()
    : Dual(kFacts),
      user_(ModuleHandle(), ParentFolderOf(Utf8FromWide(ModulePath())), loop_),
      manager_(thread().log(), {SystemFiles(), user_, &loop_}) {}

// True when `body` was run and is true; a call from within an operation is turned away.
template <class Body>
bool ConvertLLMgrFace::Operate(Body&& body) {
  if (thread().operating()) return false;
  const Operating operating(thread());
  return body();
}

template <class Body>
HRESULT ConvertLLMgrFace::RunOperation(VARIANT_BOOL* pblnResult, Body&& body) {
  return Run([&] {
    RequirePointer(pblnResult);
    *pblnResult = VARIANT_FALSE;
    if (Operate(body)) *pblnResult = VARIANT_TRUE;
  });
}

STDMETHODIMP ConvertLLMgrFace::get_CountCorrectReports(LONG* plngCount) {
  return Run([&] {
    RequirePointer(plngCount);
    *plngCount = manager_.CountCorrectReports();
  });
}

STDMETHODIMP ConvertLLMgrFace::get_Errors(IErrorCollection** ppobjErrors) {
  return Run([&] {
    RequirePointer(ppobjErrors);
    *ppobjErrors = nullptr;
    *ppobjErrors = ErrorCollectionFace::Of(manager_.Errors()).Detach();
  });
}

STDMETHODIMP ConvertLLMgrFace::ShowErrorProtocol() {
  return Run([&] {
    Operate([&] {
      manager_.ShowErrorProtocol();
      return true;
    });
  });
}

STDMETHODIMP ConvertLLMgrFace::CreateDiffFiles(BSTR strOldFolderPath, BSTR strNewFolderPath,
                                               BSTR strDiffFolderPath, VARIANT_BOOL* pblnResult) {
  return RunOperation(pblnResult, [&] {
    return manager_.CreateDiffFiles(ToUtf8(strOldFolderPath), ToUtf8(strNewFolderPath),
                                    ToUtf8(strDiffFolderPath));
  });
}

STDMETHODIMP ConvertLLMgrFace::CreateDiffFile(BSTR strOldFilePath, BSTR strNewFilePath,
                                              BSTR strDiffFolderPath, VARIANT_BOOL* pblnResult) {
  return RunOperation(pblnResult, [&] {
    return manager_.CreateDiffFile(ToUtf8(strOldFilePath), ToUtf8(strNewFilePath),
                                   ToUtf8(strDiffFolderPath));
  });
}

STDMETHODIMP ConvertLLMgrFace::ConvertReport(BSTR strRepFilePath, BSTR strDiffFilePath,
                                             BSTR strRepBackupFolderPath,
                                             VARIANT_BOOL* pblnResult) {
  return RunOperation(pblnResult, [&] {
    return manager_.ConvertReport(ToUtf8(strRepFilePath), ToUtf8(strDiffFilePath),
                                  ToUtf8(strRepBackupFolderPath));
  });
}

STDMETHODIMP ConvertLLMgrFace::ConvertReports(BSTR strDiffFolderPath, BSTR strRepFolderPath,
                                              BSTR strRepBackupFolderPath,
                                              VARIANT colRepFilesToOmit, VARIANT_BOOL* pblnResult) {
  return RunOperation(pblnResult, [&] {
    const OmitCollection omit(colRepFilesToOmit);
    OmitReport omit_report;
    if (omit) omit_report = [&](const std::string& name) { return omit.Contains(name); };
    return manager_.ConvertReports(ToUtf8(strDiffFolderPath), ToUtf8(strRepFolderPath),
                                   ToUtf8(strRepBackupFolderPath), omit_report);
  });
}

}  // namespace tessary::com
