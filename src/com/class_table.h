#pragma once

#include <span>

#include "com/com_ptr.h"
#include "com/system.h"

namespace tessary::com {

// A class that clients can create.
struct CreatableClass {
  const CLSID& class_id;
  const wchar_t* name;         // the ProgID is "Tessary." and this
  const wchar_t* description;  // German
  ComPtr<IDispatch> (*create)();
};

std::span<const CreatableClass> CreatableClasses();

// The class with this identifier, or null.
const CreatableClass* FindClass(REFCLSID class_id);

}  // namespace tessary::com
