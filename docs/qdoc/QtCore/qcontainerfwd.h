// Stands before Qt's header of this name when QDoc parses. Qt 5.15 declares QByteArrayList as another name for a list
// here, and as a class elsewhere when it is QDoc that reads; nobody needs the first one.
#pragma once
#pragma push_macro("QByteArrayList")
#define QByteArrayList QByteArrayListOfThisHeader
#include_next <QtCore/qcontainerfwd.h>
#pragma pop_macro("QByteArrayList")
