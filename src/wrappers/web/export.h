// Marks what hosts may use of pageprobeLib; everything else stays hidden.
#pragma once

#include <QtGlobal>

#ifdef PAGEPROBELIB_BUILD
#define PAGEPROBELIB_EXPORT Q_DECL_EXPORT
#else
#define PAGEPROBELIB_EXPORT Q_DECL_IMPORT
#endif
