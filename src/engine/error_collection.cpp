#include "engine/error_collection.h"

namespace tessary {

void ErrorCollection::AppendFrom(const ErrorCollection& other) {
  const std::vector<ErrorEntry> added = other.entries_;  // `other` may be this collection
  entries_.insert(entries_.end(), added.begin(), added.end());
}

}  // namespace tessary
