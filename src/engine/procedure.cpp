#include "engine/procedure.h"

namespace tessary {

std::string SourceText(std::string_view class_name, std::string_view procedure) {
  return std::string(class_name).append(" Prozedur: ").append(procedure);
}

void Procedure::Report(Procedure procedure, const Failure& failure) {
  ErrorCollection& collection = *procedure.errors.objErrors;
  const bool own = procedure.when == Message::kAlways || !collection.empty();
  if (own && procedure.message.empty()) return;
  collection.Add({ErrorEntry::kFailure, failure.number(),
                  SourceText(procedure.class_name, procedure.name),
                  own ? std::string(procedure.message) : failure.description()});
}

}  // namespace tessary
