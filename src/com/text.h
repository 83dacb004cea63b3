#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "com/system.h"

namespace tessary::com {

// Owner of one automation string, or of none.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::wstring_view text);
  explicit Bstr(std::string_view utf8);
  Bstr(const Bstr&) = delete;
  Bstr(Bstr&& other) noexcept : text_(other.Detach()) {}
  Bstr& operator=(Bstr other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~Bstr() { SysFreeString(text_); }

  BSTR get() const { return text_; }
  // Hands the string to the caller.
  BSTR Detach() { return std::exchange(text_, nullptr); }

 private:
  BSTR text_ = nullptr;
};

// No string at all is an empty one.
std::string ToUtf8(BSTR text);

// Stores a text where a method returns one.
void ReturnText(std::string_view utf8, BSTR* result);

}  // namespace tessary::com
