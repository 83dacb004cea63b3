#pragma once

#include <string>

namespace tessary {

// All messages with cause and remedy as a page in Markdown, docs/meldungen.md.
std::string MessagePage();

}  // namespace tessary
