#pragma once

#include <QtCore/QtGlobal>

/// Marks what VXXML shows to those who link it; everything else stays hidden.
#if defined(VXXML_EXPORTS)
#define VXXML_EXPORT Q_DECL_EXPORT
#else
#define VXXML_EXPORT Q_DECL_IMPORT
#endif
