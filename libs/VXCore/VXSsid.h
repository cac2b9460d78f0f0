#pragma once

#include "VXCoreExport.h"

#include <QtCore/QByteArrayView>
#include <QtCore/QString>

/// The name of a wireless network. Any station within reach may send any bytes as its name.
namespace VXSsid {

/// theBytes as text: UTF-8 if they are, else Latin-1, without control characters. Only the first
/// 32 bytes count, IEEE 802.11, 9.4.2.2.
[[nodiscard]] VXCORE_EXPORT QString text(QByteArrayView theBytes);

} // namespace VXSsid
