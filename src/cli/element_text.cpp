#include "cli/element_text.h"

#include <string_view>

#include "platform/text.h"
#include "report/line_syntax.h"

namespace tessary {
namespace {

std::string_view StatusText(std::int8_t status) {
  switch (status) {
    case bxsDelete:
      return "gelöscht: ";
    case bxsNew:
      return "neu: ";
    case bxsUpdate:
      return "geändert: ";
    default:
      return {};
  }
}

// Collects "label text" pieces separated by commas.
class Details {
 public:
  void Add(std::string_view label, std::string_view text) {
    if (text.empty()) return;
    if (!text_.empty()) text_.append(", ");
    text_.append(label).append(" ").append(text);
  }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

// A neighbour by its name, with the key where that tells more.
std::string Neighbour(std::string_view name, std::string_view key) {
  std::string text(name);
  if (!key.empty() && !EqualsIgnoreCase(key, name)) text.append(" ").append(key);
  return text;
}

}  // namespace

std::string ElementText(const Element& element, const TextPool& pool) {
  const auto text = [&](BXElementArray column) { return pool.Text(element.key[column]); };
  const std::string_view name = text(bxeaName);
  const std::string_view key = text(bxeaKey);
  std::string line(StatusText(element.status));
  Details details;
  if (IsSectionLine(name)) {
    line.append(name);
    if (!EqualsIgnoreCase(key, name)) details.Add("Schlüssel", key);
  } else {
    AppendProperty(name, key, element.value(), line);
  }
  details.Add("Typ", text(bxeaTyp));
  if (element.status != bxsUnknown) {
    details.Add("nach", Neighbour(text(bxeaPosPrevName), text(bxeaPosPrevKey)));
    details.Add("vor", Neighbour(text(bxeaPosNextName), text(bxeaPosNextKey)));
    details.Add("Nr.", text(bxeaPosNr));
  }
  if (!details.text().empty()) line.append("  (").append(details.text()).append(")");
  return line;
}

}  // namespace tessary
