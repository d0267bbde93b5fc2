#pragma once

#include <QtCore/qglobal.h>

#ifdef ORVEKQTHOST_BUILD
#define ORVEKQTHOST_EXPORT Q_DECL_EXPORT
#else
#define ORVEKQTHOST_EXPORT Q_DECL_IMPORT
#endif
