#pragma once

#include <string>

#include "com/com_ptr.h"
#include "com/system.h"

namespace tessary::com {

// A caller's collection of reports to leave out: any automation object that can be asked by a
// string key. A key that is missing or has an empty value means that the report is not left out.
class OmitCollection {
 public:
  // Nothing, Missing, Null and Empty stand for no collection; DISP_E_TYPEMISMATCH for any other
  // value that is no automation object.
  explicit OmitCollection(const VARIANT& collection);

  explicit operator bool() const { return static_cast<bool>(object_); }
  bool Contains(const std::string& key) const;

 private:
  bool Exists(BSTR key) const;

  ComPtr<IDispatch> object_;
};

}  // namespace tessary::com
