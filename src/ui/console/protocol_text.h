#pragma once

#include <cstddef>
#include <string>

#include "ui/console/output.h"
#include "ui/console/text_style.h"
#include "ui/protocol_tree.h"

namespace tessary {

// The mark of an image: a sign where the terminal shows it, otherwise a word; all words have one
// width. What hangs below something stands MarkIndent columns further right.
std::string MarkText(ProtocolImage image, const TextStyle& style);
std::size_t MarkIndent(const TextStyle& style);

enum class ProtocolPart { kAll, kFailures };

// Prints the protocol as a tree, one line per node. kFailures leaves out the reports that
// succeeded and have no messages.
void PrintProtocol(const ProtocolTree& tree, ProtocolPart part, const TextStyle& style,
                   Output& output);

}  // namespace tessary
