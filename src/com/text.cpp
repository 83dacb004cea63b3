#include "com/text.h"

#include <limits>
#include <new>

#include "com/com_error.h"
#include "platform/windows/wide_text.h"

namespace tessary::com {

Bstr::Bstr(std::wstring_view text) {
  if (text.size() > std::numeric_limits<UINT>::max()) throw std::bad_alloc();
  text_ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (!text_) throw std::bad_alloc();
}

Bstr::Bstr(std::string_view utf8) : Bstr(std::wstring_view(WideFromUtf8(utf8))) {}

std::string ToUtf8(BSTR text) {
  return Utf8FromWide(std::wstring_view(text, SysStringLen(text)));
}

void ReturnText(std::string_view utf8, BSTR* result) {
  RequirePointer(result);
  *result = Bstr(utf8).Detach();
}

}  // namespace tessary::com
