#pragma once

#include <QtGui/qwindowdefs.h>

// In place of the library's header of this name: the handle as Windows declares it.
struct HWND__;
using HWND = HWND__*;
