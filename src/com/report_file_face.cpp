#include "com/report_file_face.h"

#include "com/text.h"
#include "com/x_array_db.h"

namespace tessary::com {
namespace {

const ClassFacts kFacts{CLSID_BXReportFile, IID_IBXReportFile, nullptr, L"Tessary.BXReportFile"};

}  // namespace

ReportFileFace::ReportFileFace() : Dual(kFacts), report_(thread().context()) {}

STDMETHODIMP ReportFileFace::putref_ReportFile(IXArrayDB* aReportFile) {
  return RunInEngine(
      [&] { report_.SetReportFile(XArrayDBFace::ElementsOf(thread(), aReportFile)); });
}

STDMETHODIMP ReportFileFace::get_ReportFile(IXArrayDB** ppaReportFile) {
  return RunInEngine([&] {
    RequirePointer(ppaReportFile);
    *ppaReportFile = nullptr;
    *ppaReportFile = XArrayDBFace::Of(report_.ReportFile()).Detach();
  });
}

STDMETHODIMP ReportFileFace::AddLine(BSTR strLine) {
  return RunInEngine([&] { report_.AddLine(ToUtf8(strLine)); });
}

STDMETHODIMP ReportFileFace::GetFirstLine(BSTR* pstrLine) {
  return RunInEngine([&] {
    RequirePointer(pstrLine);
    *pstrLine = nullptr;
    ReturnText(report_.GetFirstLine(), pstrLine);
  });
}

STDMETHODIMP ReportFileFace::GetNextLine(BSTR* pstrLine) {
  return RunInEngine([&] {
    RequirePointer(pstrLine);
    *pstrLine = nullptr;
    ReturnText(report_.GetNextLine(), pstrLine);
  });
}

}  // namespace tessary::com
