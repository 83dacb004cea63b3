#pragma once

#include <utility>

#include "com/system.h"

namespace tessary::com {

// A failed result of the system or of this layer on its way to the end of a method.
struct ComError {
  HRESULT result;
};

inline void Check(HRESULT result) {
  if (FAILED(result)) throw ComError{result};
}

inline void RequirePointer(const void* pointer) {
  if (!pointer) throw ComError{E_POINTER};
}

// Who reports an error: the interface that was called and the class, by its ProgID.
struct ErrorOrigin {
  const IID& interface_id;
  const wchar_t* source;
};

// The result that stands for the exception in flight, with its text left as the thread's error
// information. To be called from a catch clause only; throws nothing.
HRESULT ReportException(const ErrorOrigin& origin) noexcept;

// Runs the body of a method; no exception leaves it.
template <class Body>
HRESULT Guarded(const ErrorOrigin& origin, Body&& body) noexcept {
  try {
    body();
    return S_OK;
  } catch (...) {
    return ReportException(origin);
  }
}

}  // namespace tessary::com
