#include "ui/protocol_window_texts.h"

#include "platform/path.h"

namespace tessary::protocol_window {

RepairPaths RepairPathsOf(std::string_view own_folder) {
  const std::string_view folder = WithoutTrailingSeparator(own_folder);
  const std::string database = JoinPath(folder, "DB");
  return {JoinPath(folder, "Velquist.exe"), JoinPath(database, "BerichteLLDiff"),
          JoinPath(database, "BerichteLLOrg"), "", JoinPath(database, "BerichteLLBak")};
}

}  // namespace tessary::protocol_window
