#pragma once

// The system's header without its habit of renaming what others declare.

#ifndef NOMINMAX
#define NOMINMAX
#endif

#include <windows.h>

#undef CopyFile
#undef Yield
