#pragma once

#include <QtCore/QtGlobal>

/// Marks what VXGUIWidgets shows to those who link it; everything else stays hidden.
#if defined(VXGUIWidgets_EXPORTS)
#define VXGUIWIDGETS_EXPORT Q_DECL_EXPORT
#else
#define VXGUIWIDGETS_EXPORT Q_DECL_IMPORT
#endif
