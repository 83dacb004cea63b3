#pragma once

#include "com/class_table.h"
#include "com/com_ptr.h"
#include "com/system.h"

namespace tessary::com {

ComPtr<IClassFactory> NewClassFactory(const CreatableClass& created);

}  // namespace tessary::com
