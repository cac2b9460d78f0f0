#pragma once

#include <QtCore/QtGlobal>

/// Marks what VXCore shows to those who link it; everything else stays hidden.
#if defined(VXCore_EXPORTS)
#define VXCORE_EXPORT Q_DECL_EXPORT
#else
#define VXCORE_EXPORT Q_DECL_IMPORT
#endif
