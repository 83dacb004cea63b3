// Any bytes as a difference file, applied to a report by the manager: the report is as it was or
// converted, its backup is the report as it was, and the log says which.

#include "fuzz/fuzz_target.h"
#include "platform/path.h"
#include "support/manager_test_base.h"

using namespace tessary;

namespace {

const std::string& Report() {
  static const std::string report = ReportText(
      3, "Rechnung", {"[Layout]",    " Name=A",         " [Object]",     " {",       "  Type=Text",
                      "  Name=Kopf", "  Height=10",     "  [@Lines]",    "  {",      "   [Line]",
                      "   {",        "    LineID=1",    "    Text=eins", "   }",     "   [Line]",
                      "   {",        "    LineID=2",    "    Text=zwei", "   }",     "  }",
                      " }",          "[UserVariables]", " User0=@a",     " User1=@b"});
  return report;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string report = JoinPath(JoinPath("", "R"), "A.lst");
  const std::string backup = JoinPath(JoinPath("", "RBak"), "A.lst");
  const std::string difference = JoinPath(JoinPath("", "diff"), "3_4Rechnung");
  MemoryFiles files;
  files.Put(report, Report());
  files.Put(difference, fuzz::Bytes(data, size));
  ResultLog log;
  RecordingUser user;
  BXConvertLLMgr manager(log, {files, user});
  const bool converted = manager.ConvertReport(report, difference, "");
  fuzz::Require(files.Get(backup) == Report(), "the backup is the report as it was");
  fuzz::Require(converted || files.Get(report) == Report(), "a failure changes no report");
  fuzz::Require(log.dictCorrect.Count() == (converted ? 1 : 0), "a success is logged");
  fuzz::Require(log.dictErrors.Count() == (converted ? 0 : 1), "a failure is logged");
  fuzz::Require(user.Questions().empty() && user.open_windows() == 0, "nothing stays open");
  return 0;
}
