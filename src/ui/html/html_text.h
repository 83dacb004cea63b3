#pragma once

#include <string>
#include <string_view>

namespace tessary {

// `text`, which may be any bytes, as the text of an HTML element or of an attribute in quotation
// marks: one line, well-formed, nothing in it taken for markup.
std::string HtmlText(std::string_view text);

}  // namespace tessary
