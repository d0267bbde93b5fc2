#pragma once

#include <QtCore/qglobal.h>

#ifdef ORVEKQTWIDGETS_BUILD
#define ORVEKQTWIDGETS_EXPORT Q_DECL_EXPORT
#else
#define ORVEKQTWIDGETS_EXPORT Q_DECL_IMPORT
#endif
