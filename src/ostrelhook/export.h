// Marks what hosts and the wrappers may use of this library; everything else stays hidden.
#pragma once

#include <QtGlobal>

#ifdef OSTRELHOOK_BUILD
#define OSTRELHOOK_EXPORT Q_DECL_EXPORT
#else
#define OSTRELHOOK_EXPORT Q_DECL_IMPORT
#endif
