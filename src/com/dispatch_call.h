#pragma once

#include "com/system.h"

namespace tessary::com {

// Carries out a late-bound call on a dual interface through its type information. Script engines
// pass references to variants and objects by whatever interface they hold; here these become the
// references and interfaces that the member declares, and results are written back.
HRESULT CallByTypeInfo(ITypeInfo* info, void* interface_pointer, DISPID member, WORD flags,
                       DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                       UINT* argument_in_error);

}  // namespace tessary::com
