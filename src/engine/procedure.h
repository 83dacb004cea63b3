#pragma once

#include <new>
#include <string_view>

#include "engine/error_collection.h"
#include "platform/failure.h"

namespace tessary {

// A procedure's part in the error convention. Every procedure that can fail clears the shared
// error collection on entry. When it fails and the collection is still empty, it adds the
// failure's own description; otherwise it adds its own message, if it has one. Then the failure
// goes on to the caller, so that the collection ends up with the innermost description first and
// one message of each enclosing procedure behind it.
struct Procedure {
  enum class Message { kAfterDescription, kAlways };

  SharedErrors& errors;
  std::string_view class_name;
  std::string_view name;
  std::string_view message = {};
  Message when = Message::kAfterDescription;

  // Calls `body` under the convention and returns its result.
  template <class Body>
  decltype(auto) Run(Body&& body) const {
    errors.objErrors->Reset();
    try {
      return body();
    } catch (const Failure& failure) {
      Report(*this, failure);
      throw;
    } catch (const std::bad_alloc&) {
      const Failure failure(kOutOfMemory);
      Report(*this, failure);
      throw failure;
    }
  }

 private:
  // Takes a copy, so that where nothing fails no procedure has to be laid out in memory.
  static void Report(Procedure procedure, const Failure& failure);
};

// "class Prozedur: name", the source text of an entry.
std::string SourceText(std::string_view class_name, std::string_view procedure);

}  // namespace tessary
