#pragma once

#include <QtCore/QtGlobal>

/// Marks what VXNetworking shows to those who link it; everything else stays hidden.
#if defined(VXNetworking_EXPORTS)
#define VXNETWORKING_EXPORT Q_DECL_EXPORT
#else
#define VXNETWORKING_EXPORT Q_DECL_IMPORT
#endif
