#include "engine/procedure.h"

namespace tessary {

std::string SourceText(std::string_view class_name, std::string_view procedure) {
  return std::string(class_name).append(" Prozedur: ").append(procedure);
}

void Procedure::Report(const Failure& failure) const {
  ErrorCollection& collection = *errors.objErrors;
  const bool own = when == Message::kAlways || !collection.empty();
  if (own && message.empty()) return;
  collection.Add({ErrorEntry::kFailure, failure.number(), SourceText(class_name, name),
                  own ? std::string(message) : failure.description()});
}

}  // namespace tessary
