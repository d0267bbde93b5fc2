#pragma once

#include <QtGui/qwindowdefs.h>

#ifdef Q_OS_WIN
#include <QtCore/qt_windows.h>
#else
//! The native handle of a window, as QWidget::winId() returns it; 0 means no window.
using HWND = WId;
#endif
