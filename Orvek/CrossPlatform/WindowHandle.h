#pragma once

#include <QtGui/qwindowdefs.h>

#ifdef Q_OS_WIN
#include <QtCore/qt_windows.h>
#else
//! The native handle of a window, as QWidget::winId() gives it. 0 is no window.
using HWND = WId;
#endif
