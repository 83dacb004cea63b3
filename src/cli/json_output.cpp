#include "cli/json_output.h"

#include <map>
#include <nlohmann/json.hpp>

#include "platform/text.h"

namespace tessary {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

Json Texts(const std::vector<std::string>& texts) {
  Json array = Json::array();
  for (const std::string& text : texts) array.push_back(ToValidUtf8(text));
  return array;
}

Json Correct(const ResultDictionary& log) {
  Json array = Json::array();
  for (const auto& item : log.items()) array.push_back(ToValidUtf8(item.text));
  return array;
}

// Members are appended without the library's search for the key, which goes through all of them.
// Texts that differ only in ill-formed bytes become one member with the messages of all.
Json Errors(const ResultDictionary& log) {
  Json object = Json::object();
  auto& members = object.get_ref<Json::object_t&>();
  std::map<std::string, std::size_t> places;
  for (const auto& item : log.items()) {
    const std::string key = ToValidUtf8(item.text);
    const auto [place, is_new] = places.emplace(key, members.size());
    if (is_new) members.push_back({key, Json::array()});
    Json& messages = (members.begin() + static_cast<std::ptrdiff_t>(place->second))->second;
    for (const std::string& message : item.messages) messages.push_back(ToValidUtf8(message));
  }
  return object;
}

Json Entries(const ErrorCollection& errors) {
  Json array = Json::array();
  for (const ErrorEntry& entry : errors.entries()) {
    array.push_back(Json{{"kind", entry.kind},
                         {"number", entry.number},
                         {"source", ToValidUtf8(entry.source)},
                         {"message", ToValidUtf8(entry.message)}});
  }
  return array;
}

Json Verification(const std::vector<CheckedDifference>& differences) {
  Json array = Json::array();
  for (const CheckedDifference& checked : differences) {
    Json places = Json::array();
    for (const Unreproduced& place : checked.places) {
      places.push_back({{"reason", DeviationId(place.reason)},
                        {"section", Texts(place.place)},
                        {"line", place.line},
                        {"wanted", ToValidUtf8(place.wanted)},
                        {"found", ToValidUtf8(place.found)}});
    }
    Json item = {{"old", ToValidUtf8(checked.old_path)},
                 {"new", ToValidUtf8(checked.new_path)},
                 {"difference_file", ToValidUtf8(checked.diff_path)},
                 {"not_reproduced", places}};
    if (!checked.failure.empty()) item["failure"] = ToValidUtf8(checked.failure);
    array.push_back(std::move(item));
  }
  return array;
}

}  // namespace

std::string ResultAsJson(bool result, const ResultLog& log,
                         const std::vector<std::string>& warnings, const JsonDetails& details) {
  Json object = {{"result", result}};
  if (details.dry_run) object["dry_run"] = true;
  if (details.changes) {
    object["changes"] = {{"applied", details.changes->applied},
                         {"skipped", details.changes->skipped}};
  }
  if (details.differences) object["verification"] = Verification(*details.differences);
  object["correct"] = Correct(log.dictCorrect);
  object["errors"] = Errors(log.dictErrors);
  object["entries"] = Entries(*log.errors.objErrors);
  if (!warnings.empty()) object["warnings"] = Texts(warnings);
  return object.dump(kIndent) + "\n";
}

}  // namespace tessary
