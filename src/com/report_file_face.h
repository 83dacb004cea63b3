#pragma once

#include "com/dual.h"
#include "report/report_file.h"

namespace tessary::com {

// The line store as clients see it.
class ReportFileFace final : public Dual<IBXReportFile> {
 public:
  ReportFileFace();

  STDMETHODIMP putref_ReportFile(IXArrayDB* aReportFile) override;
  STDMETHODIMP get_ReportFile(IXArrayDB** ppaReportFile) override;
  STDMETHODIMP AddLine(BSTR strLine) override;
  STDMETHODIMP GetFirstLine(BSTR* pstrLine) override;
  STDMETHODIMP GetNextLine(BSTR* pstrLine) override;

 private:
  const ContextUse use_{thread()};
  BXReportFile report_;
};

}  // namespace tessary::com
