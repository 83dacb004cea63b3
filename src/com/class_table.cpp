#include "com/class_table.h"

#include <algorithm>

#include "com/convert_ll_mgr_face.h"
#include "com/level_face.h"
#include "com/report_file_face.h"
#include "com/x_array_db.h"

namespace tessary::com {
namespace {

template <class Face>
ComPtr<IDispatch> New() {
  return ComPtr<IDispatch>::Share(new Face);
}

template <int number>
ComPtr<IDispatch> NewLevel() {
  return LevelFace::New(number);
}

const CreatableClass kClasses[] = {
    {CLSID_BXConvertLLMgr, L"BXConvertLLMgr", L"Tessary Berichtskonvertierung",
     New<ConvertLLMgrFace>},
    {CLSID_BXReportFile, L"BXReportFile", L"Tessary Berichtszeilen", New<ReportFileFace>},
    {CLSID_XArrayDB, L"XArrayDB", L"Tessary Array", New<XArrayDBFace>},
    {CLSID_BXLevelBasis, L"BXLevelBasis", L"Tessary Ebene", NewLevel<Level::kNoLevelClass>},
    {CLSID_BXLevel0, L"BXLevel0", L"Tessary Ebene 0", NewLevel<0>},
    {CLSID_BXLevel1, L"BXLevel1", L"Tessary Ebene 1", NewLevel<1>},
    {CLSID_BXLevel2, L"BXLevel2", L"Tessary Ebene 2", NewLevel<2>},
    {CLSID_BXLevel3, L"BXLevel3", L"Tessary Ebene 3", NewLevel<3>},
    {CLSID_BXLevel4, L"BXLevel4", L"Tessary Ebene 4", NewLevel<4>},
    {CLSID_BXLevel5, L"BXLevel5", L"Tessary Ebene 5", NewLevel<5>},
    {CLSID_BXLevel6, L"BXLevel6", L"Tessary Ebene 6", NewLevel<6>},
    {CLSID_BXLevel7, L"BXLevel7", L"Tessary Ebene 7", NewLevel<7>},
    {CLSID_BXLevel8, L"BXLevel8", L"Tessary Ebene 8", NewLevel<8>},
    {CLSID_BXLevel9, L"BXLevel9", L"Tessary Ebene 9", NewLevel<9>},
};

}  // namespace

std::span<const CreatableClass> CreatableClasses() { return kClasses; }

const CreatableClass* FindClass(REFCLSID class_id) {
  const auto* const found =
      std::find_if(std::begin(kClasses), std::end(kClasses),
                   [&](const CreatableClass& entry) { return entry.class_id == class_id; });
  return found == std::end(kClasses) ? nullptr : found;
}

}  // namespace tessary::com
