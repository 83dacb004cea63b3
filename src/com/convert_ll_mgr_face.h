#pragma once

#include "com/dual.h"
#include "manager/convert_ll_mgr.h"
#include "platform/windows/message_loop.h"
#include "ui/win32/windows_user_interface.h"

namespace tessary::com {

// The manager. Its operations say by their result whether they succeeded; the call itself fails
// only for arguments that it cannot take. While one runs, every further one on the thread, whose
// messages go on being handled, does nothing and returns False.
class ConvertLLMgrFace final : public Dual<IBXConvertLLMgr> {
 public:
  ConvertLLMgrFace();

  STDMETHODIMP get_CountCorrectReports(LONG* plngCount) override;
  STDMETHODIMP get_Errors(IErrorCollection** ppobjErrors) override;
  STDMETHODIMP ShowErrorProtocol() override;
  STDMETHODIMP CreateDiffFiles(BSTR strOldFolderPath, BSTR strNewFolderPath, BSTR strDiffFolderPath,
                               VARIANT_BOOL* pblnResult) override;
  STDMETHODIMP CreateDiffFile(BSTR strOldFilePath, BSTR strNewFilePath, BSTR strDiffFolderPath,
                              VARIANT_BOOL* pblnResult) override;
  STDMETHODIMP ConvertReport(BSTR strRepFilePath, BSTR strDiffFilePath, BSTR strRepBackupFolderPath,
                             VARIANT_BOOL* pblnResult) override;
  STDMETHODIMP ConvertReports(BSTR strDiffFolderPath, BSTR strRepFolderPath,
                              BSTR strRepBackupFolderPath, VARIANT colRepFilesToOmit,
                              VARIANT_BOOL* pblnResult) override;

 private:
  template <class Body>
  bool Operate(Body&& body);
  template <class Body>
  HRESULT RunOperation(VARIANT_BOOL* pblnResult, Body&& body);

  ThreadMessageLoop loop_;
  win32::WindowsUserInterface user_;
  BXConvertLLMgr manager_;
};

}  // namespace tessary::com
