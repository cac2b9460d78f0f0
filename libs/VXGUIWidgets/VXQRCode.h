#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtCore/QByteArray>

#include <optional>

/// The dark and light modules of a QR code. A plain value; reentrant, needs no display.
class VXGUIWIDGETS_EXPORT VXQRCode
{
public:
    /// The modules that must stay light on each side of a code, ISO/IEC 18004, 6.3.8.
    static constexpr int quietZone = 4;

    /// The code of these bytes; a damage of 15 % does no harm to it. Nothing for no bytes and for
    /// more than any code holds (2331).
    [[nodiscard]] static std::optional<VXQRCode> fromText(const QByteArray& theText);

    /// Modules per side, without the quiet zone.
    [[nodiscard]] int size() const noexcept { return mySize; }

    /// True for a dark module; light outside the code. Counted from the upper left corner.
    [[nodiscard]] bool isDark(int theRow, int theColumn) const;

private:
    VXQRCode() = default;

    QByteArray myModules; // row by row, one byte each, 1 = dark
    int mySize = 0;
};
