#pragma once

#include "ui/console/output.h"
#include "ui/console/text_style.h"
#include "ui/protocol_tree.h"

namespace tessary {

enum class ProtocolPart { kAll, kFailures };

// Prints the protocol as a tree, one line per node. kFailures leaves out the reports that
// succeeded and have no messages.
void PrintProtocol(const ProtocolTree& tree, ProtocolPart part, const TextStyle& style,
                   Output& output);

}  // namespace tessary
