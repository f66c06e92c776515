#pragma once

#include <QtCore/QtGlobal>

#if defined(PARLOQUIN_BUILDING)
#define PARLOQUIN_EXPORT Q_DECL_EXPORT
#else
#define PARLOQUIN_EXPORT Q_DECL_IMPORT
#endif
