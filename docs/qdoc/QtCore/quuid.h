// Stands before Qt's header of this name when QDoc parses. Qt 5.15 declares functions of Windows for QDoc here, which
// cannot be the constant expressions that they say they are.
#pragma once
#pragma push_macro("Q_DECL_RELAXED_CONSTEXPR")
#undef Q_DECL_RELAXED_CONSTEXPR
#define Q_DECL_RELAXED_CONSTEXPR
#include_next <QtCore/quuid.h>
#pragma pop_macro("Q_DECL_RELAXED_CONSTEXPR")
