#pragma once

// The system's automation headers, and what the type library declares.

#include "platform/windows/system_headers.h"

#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>

#include "Tessary_h.h"
